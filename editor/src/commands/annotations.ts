import * as annotations from '../model/annotations.ts';
import type { Changes } from '../model/changes.ts';
import type { Point } from '../model/document.ts';
import type { AnnotationRecord, EdgeState } from '../model/messages.ts';
import type { Selection } from '../model/selection.ts';
import type { Store } from '../model/store.ts';
import type { Box } from '../model/viewport.ts';
import type { Places } from './places.ts';

/** Commands for frames, notes and points of edges. */
export class Annotations {
    constructor(
        private readonly store: Store,
        private readonly changes: Changes,
        private readonly selection: Selection,
        private readonly places: Places,
    ) {}

    /** Adds a frame around the selection, or an empty frame at a point, and selects it. */
    async addFrame(point: Point): Promise<void> {
        const area = annotations.areaAround(this.store.get().document, this.selection.held());
        await this.add('frame', area ?? { ...point, ...annotations.emptyFrameSize });
    }

    async addNote(point: Point): Promise<void> {
        await this.add('note', { ...point, ...annotations.noteSize });
    }

    private async add(kind: AnnotationRecord['kind'], area: Box): Promise<void> {
        const { id, steps } = annotations.addAnnotation(this.store.get().document, kind, area);
        const answer = await this.changes.apply(steps);
        if (answer && !answer.error) this.selection.selectIds([], [id]);
    }

    set(record: AnnotationRecord, gesture?: string): void {
        void this.changes.apply([annotations.setAnnotation(record)], gesture);
    }

    setPoints(edge: EdgeState, points: readonly Point[], selected: number | null, gesture?: string): void {
        void this.changes.apply([annotations.setPoints(edge.record, points)], gesture)?.then((answer) => {
            if (!answer.error) this.selection.selectEdge(edge.number, selected);
        });
    }

    /** Adds a point to an edge, by default in the middle of its longest segment. */
    addPoint(edge: EdgeState, at?: Point): void {
        const { document } = this.store.get();
        const place = at ?? annotations.middleOf(document, edge);
        const { points, index } = annotations.withPoint(document, edge, place);
        this.setPoints(edge, points, index);
        this.store.say(`Added point ${index + 1} of ${points.length} to the edge.`);
    }

    removePoint(edge: EdgeState, index: number): void {
        const points = this.places.pointsOf(edge).filter((_, i) => i !== index);
        this.setPoints(edge, points, null);
    }
}
