import type { Editor } from '../editor.ts';
import { isEmpty, moved, noMoves, pointMoved, resized, type Moves } from '../model/annotations.ts';
import type { Point } from '../model/document.ts';
import type { AnnotationState, EdgeState } from '../model/messages.ts';
import { contains, overlap, type Box } from '../model/viewport.ts';
import { boxOf } from './painter.ts';

/** What the pointer does from the press of a button to its release. Points are in graph coordinates. */
export interface Gesture {
    moveTo(point: Point): void;
    end(): void;
}

class Drag implements Gesture {
    constructor(
        private readonly editor: Editor,
        private readonly from: Point,
        /** The positions of the dragged items after a move from the start of the drag. */
        private readonly movesBy: (by: Point) => Moves,
    ) {}

    moveTo({ x, y }: Point): void {
        this.editor.places.drag(this.movesBy({ x: x - this.from.x, y: y - this.from.y }));
    }

    end(): void {
        if (!isEmpty(this.editor.store.get().moves)) void this.editor.places.drop();
    }
}

/** Drags the selection and the contents of the selected frames. */
export function dragSelection(editor: Editor, from: Point): Gesture {
    const places = editor.places.held();
    return new Drag(editor, from, (by) => moved(places, by));
}

/** Drags a point of an edge. */
export function dragPoint(editor: Editor, from: Point, edge: EdgeState, index: number): Gesture {
    const points = editor.places.pointsOf(edge);
    return new Drag(editor, from, (by) => pointMoved(edge, points, index, by));
}

/** Drags the lower right corner of a frame or note. */
export function dragCorner(editor: Editor, from: Point, annotation: AnnotationState): Gesture {
    const area = editor.places.areaOf(annotation);
    const { number } = annotation;
    return new Drag(editor, from, (by) => ({ ...noMoves, areas: new Map([[number, resized(area, by)]]) }));
}

/** Selects the nodes that a box touches, and the frames and notes that it encloses. */
export class BoxSelection implements Gesture {
    private readonly added: ReadonlySet<number>;
    private readonly addedAnnotations: ReadonlySet<number>;

    /** @param isAdding whether to extend the selection */
    constructor(
        private readonly editor: Editor,
        private readonly from: Point,
        isAdding: boolean,
        private readonly showBox: (box: Box) => void,
    ) {
        const { selection, selectedAnnotations } = editor.store.get();
        this.added = isAdding ? selection : new Set();
        this.addedAnnotations = isAdding ? selectedAnnotations : new Set();
        editor.selection.select(this.added, this.addedAnnotations);
    }

    moveTo({ x, y }: Point): void {
        const { editor, from } = this;
        const box = {
            x: Math.min(x, from.x),
            y: Math.min(y, from.y),
            width: Math.abs(x - from.x),
            height: Math.abs(y - from.y),
        };
        this.showBox(box);
        const { nodes, annotations } = editor.store.get().document;
        const inside = [...nodes.values()].filter((node) => overlap(box, boxOf(editor, node)));
        const enclosed = [...annotations.values()].filter((annotation) =>
            contains(box, editor.places.areaOf(annotation)),
        );
        editor.selection.select(
            [...this.added, ...inside.map((node) => node.number)],
            [...this.addedAnnotations, ...enclosed.map((annotation) => annotation.number)],
        );
    }

    end(): void {
        const { store } = this.editor;
        const count = store.get().selection.size;
        if (count > 0) store.say(count === 1 ? '1 node is selected.' : `${count} nodes are selected.`);
    }
}
