import type { MouseEvent, PointerEvent } from 'react';
import type { Editor } from '../editor.ts';
import type { Point } from '../model/document.ts';
import type { Box } from '../model/viewport.ts';
import { annotationAt } from './annotationPainter.ts';
import { BoxSelection, dragCorner, dragPoint, dragSelection, type Gesture } from './gestures.ts';
import { edgeAt, nodeAt, pointAt } from './painter.ts';
import { pointOf, type View } from './view.ts';

const hitDistance = 7; // in screen pixels

/** Starts a gesture when a button is pressed on what the canvas draws, and ends it when the button is released. */
export class Pointer {
    /** The latest position on the screen. */
    at: Point = { x: 300, y: 300 };
    /** What a drag does. The canvas sets it for the drag of a node, which React Flow recognises. */
    gesture: Gesture | null = null;

    constructor(
        private readonly editor: Editor,
        private readonly view: View,
        private readonly showBox: (box: Box | null) => void,
        private readonly editText: (annotation: number) => void,
    ) {}

    press = (event: PointerEvent<HTMLElement>): void => {
        this.at = pointOf(event);
        const isPane = (event.target as Element).classList.contains('react-flow__pane');
        if (event.button !== 0 || !isPane) return;
        event.currentTarget.focus();
        this.gesture = this.gestureAt(this.view.toGraph(this.at), event.shiftKey);
        if (this.gesture) event.currentTarget.setPointerCapture(event.pointerId);
    };

    move = (event: PointerEvent): void => {
        this.at = pointOf(event);
        this.gesture?.moveTo(this.view.toGraph(this.at));
    };

    release = (): void => {
        this.gesture?.end();
        this.gesture = null;
        this.showBox(null);
    };

    doubleClick = (event: MouseEvent): void => {
        if ((event.target as Element).closest('.react-flow__node') !== null) return;
        const { editor } = this;
        const { zoom } = this.view.viewport;
        const point = this.view.toGraph(pointOf(event));
        if (pointAt(editor, point, hitDistance / zoom)) return;
        const edge = edgeAt(editor, point, hitDistance / zoom);
        const held = annotationAt(editor, point, zoom);
        if (edge !== null) editor.annotations.addPoint(editor.store.get().document.edges.get(edge)!, point);
        else if (held) this.editText(held.annotation.number);
        else editor.graph.openAddMenu({ at: pointOf(event), point, placement: { kind: 'free' } });
    };

    /** Selects what is at a point. An edge is only selected, which is not a gesture. */
    private gestureAt(point: Point, isAdding: boolean): Gesture | null {
        const { editor, view } = this;
        const { zoom } = view.viewport;
        const node = view.isFar() ? nodeAt(editor, point) : undefined;
        if (node) {
            editor.selection.pick(node.number, isAdding);
            return dragSelection(editor, point);
        }
        const bend = view.isFar() ? undefined : pointAt(editor, point, hitDistance / zoom);
        if (bend) {
            editor.selection.selectEdge(bend.edge.number, bend.index);
            return dragPoint(editor, point, bend.edge, bend.index);
        }
        const held = annotationAt(editor, point, zoom);
        const isCorner = held?.part === 'corner';
        const isResized = isCorner && editor.store.get().selectedAnnotations.has(held.annotation.number);
        const edge = isResized ? null : edgeAt(editor, point, hitDistance / zoom);
        if (edge !== null) {
            editor.selection.selectEdge(edge);
            return null;
        }
        if (!held) return new BoxSelection(editor, point, isAdding, this.showBox);
        editor.selection.pickAnnotation(held.annotation.number, isAdding);
        return isCorner ? dragCorner(editor, point, held.annotation) : dragSelection(editor, point);
    }
}
