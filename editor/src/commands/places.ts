import { areaOf, moved, noMoves, placesOf, pointMoved, stepsOf, type Moves } from '../model/annotations.ts';
import type { Changes } from '../model/changes.ts';
import { positionOf, type Point } from '../model/document.ts';
import type { AnnotationState, EdgeState, NodeState } from '../model/messages.ts';
import type { Selection } from '../model/selection.ts';
import type { Store } from '../model/store.ts';
import type { Box } from '../model/viewport.ts';

/** The positions of items. Dragged items are shown at their new positions before the server has confirmed them. */
export class Places {
    constructor(
        private readonly store: Store,
        private readonly changes: Changes,
        private readonly selection: Selection,
    ) {}

    placeOf = (node: NodeState): Point => this.store.get().moves.nodes.get(node.number) ?? positionOf(node);

    areaOf(annotation: AnnotationState): Box {
        return this.store.get().moves.areas.get(annotation.number) ?? areaOf(annotation);
    }

    pointsOf(edge: EdgeState): readonly Point[] {
        return this.store.get().moves.points.get(edge.number) ?? edge.record.points ?? [];
    }

    /** The positions of everything that moves with the selection. */
    held(): Moves {
        const { document, moves } = this.store.get();
        return placesOf(document, moves, this.selection.held());
    }

    drag(moves: Moves): void {
        this.store.set({ moves });
    }

    async drop(): Promise<void> {
        const { moves, document } = this.store.get();
        await this.changes.apply(stepsOf(moves, document));
        if (this.store.get().moves === moves) this.store.set({ moves: noMoves });
    }

    nudge(by: Point): void {
        const { selectedPoint } = this.store.get();
        const edge = this.selection.edge();
        this.drag(
            edge && selectedPoint !== null
                ? pointMoved(edge, this.pointsOf(edge), selectedPoint, by)
                : moved(this.held(), by),
        );
        void this.drop();
    }

    layOut(): void {
        const held = this.selection.heldIds();
        const isPart = held.ids.length + held.annotations.length > 1;
        void this.changes.send({ do: 'layout', ...(isPart ? held : {}) }).then((answer) => {
            if (answer.error) return;
            if (!isPart) this.store.set({ layouts: this.store.get().layouts + 1 });
            this.store.say(isPart ? 'Laid out the selection.' : 'Laid out the graph.');
        });
    }
}
