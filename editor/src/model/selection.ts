import { withContents, type Items } from './annotations.ts';
import type { AnnotationState, EdgeState, NodeState } from './messages.ts';
import type { Store } from './store.ts';

/** What is selected: nodes, frames and notes, or an edge and one of its points. */
export class Selection {
    constructor(private readonly store: Store) {}

    /** Selects nodes and annotations, and deselects everything else. */
    select(nodes: Iterable<number>, annotations: Iterable<number> = []): void {
        this.store.set({
            selection: new Set(nodes),
            selectedAnnotations: new Set(annotations),
            selectedEdge: null,
            selectedPoint: null,
        });
    }

    /** Selects a node that the user points at. A selected node stays selected, or is deselected if isAdding. */
    pick(number: number, isAdding: boolean): void {
        const { selection, selectedAnnotations } = this.store.get();
        if (isAdding) this.select(toggled(selection, number), selectedAnnotations);
        else if (!selection.has(number)) this.select([number]);
    }

    pickAnnotation(number: number, isAdding: boolean): void {
        const { selection, selectedAnnotations } = this.store.get();
        if (isAdding) this.select(selection, toggled(selectedAnnotations, number));
        else if (!selectedAnnotations.has(number)) this.select([], [number]);
    }

    selectEdge(edge: number | null, point: number | null = null): void {
        this.select([]);
        this.store.set({ selectedEdge: edge, selectedPoint: point });
    }

    /** @param isAdding whether to extend the selection, at its end */
    selectIds(ids: readonly string[], chosen: readonly string[] = [], isAdding = false): void {
        const { document, selection, selectedAnnotations } = this.store.get();
        const nodes = ids.flatMap((id) => document.numbers.get(id) ?? []);
        const annotations = [...document.annotations.values()]
            .filter(({ record }) => chosen.includes(record.id))
            .map(({ number }) => number);
        if (isAdding) this.select(moveToEnd(selection, nodes), moveToEnd(selectedAnnotations, annotations));
        else this.select(nodes, annotations);
    }

    /** Selects the first edge of the selected nodes, or the edge that follows the selected edge in the document. */
    selectNextEdge(): void {
        const { document, selectedEdge } = this.store.get();
        const ids = this.nodes().map(({ record }) => record.id);
        const all = [...document.edges.values()];
        const isHere = ({ record }: EdgeState) => ids.includes(record.tail) || ids.includes(record.head);
        const at = all.findIndex(({ number }) => number === selectedEdge);
        const next = ids.length > 0 ? all.find(isHere) : all[(at + 1) % all.length];
        if (!next) {
            this.store.say('There is no edge here.');
            return;
        }
        this.selectEdge(next.number);
        const { tail, tailPort, head, headPort } = next.record;
        this.store.say(`Edge from ${tail}, ${tailPort} to ${head}, ${headPort}`);
    }

    nodes(): NodeState[] {
        const { document, selection } = this.store.get();
        return [...selection].flatMap((number) => document.nodes.get(number) ?? []);
    }

    annotations(): AnnotationState[] {
        const { document, selectedAnnotations } = this.store.get();
        return [...selectedAnnotations].flatMap((number) => document.annotations.get(number) ?? []);
    }

    edge(): EdgeState | undefined {
        const { document, selectedEdge } = this.store.get();
        return selectedEdge === null ? undefined : document.edges.get(selectedEdge);
    }

    /** The selection and the contents of the selected frames. */
    held(): Items {
        const { document, selection, selectedAnnotations } = this.store.get();
        return withContents(document, selection, selectedAnnotations);
    }

    /** The ids of the selection and of the contents of the selected frames, for messages. */
    heldIds(): { ids: string[]; annotations: string[] } {
        const { document } = this.store.get();
        const { nodes, annotations } = this.held();
        return {
            ids: [...nodes].flatMap((n) => document.nodes.get(n)?.record.id ?? []),
            annotations: [...annotations].flatMap((n) => document.annotations.get(n)?.record.id ?? []),
        };
    }
}

function moveToEnd(numbers: ReadonlySet<number>, last: readonly number[]): number[] {
    return [...[...numbers].filter((number) => !last.includes(number)), ...last];
}

function toggled(numbers: ReadonlySet<number>, number: number): Set<number> {
    const next = new Set(numbers);
    if (!next.delete(number)) next.add(number);
    return next;
}
