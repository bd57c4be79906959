import { colourOf, titleHeight } from '../model/annotations.ts';
import type { DocumentState, Point } from '../model/document.ts';
import type { AnnotationState, EdgeState } from '../model/messages.ts';
import type { Editor } from '../editor.ts';
import { overlap, type Box, type Viewport } from '../model/viewport.ts';
import type { Colours, Curve } from './painter.ts';

/** Draws frames, notes and the points of edges, and finds frames and notes at a point. */

const handleSide = 14;
const pointRadius = 5;
const lineHeight = 18;
const leastTextZoom = 0.25; // below this, the text of notes is too small to read

export type AnnotationPart = 'title' | 'corner' | 'inside';

/**
 * The topmost note or frame at a point. A note can be dragged anywhere, but a frame only at its title or
 * border, because there may be nodes inside it.
 */
export function annotationAt(
    editor: Editor,
    at: Point,
    zoom: number,
): { annotation: AnnotationState; part: AnnotationPart } | undefined {
    const all = [...editor.store.get().document.annotations.values()].reverse();
    const notesFirst = [...all.filter(isNote), ...all.filter((annotation) => !isNote(annotation))];
    const border = 5 / zoom;
    for (const annotation of notesFirst) {
        const area = editor.places.areaOf(annotation);
        const [right, bottom] = [area.x + area.width, area.y + area.height];
        const isIn = (left: number, top: number) =>
            left <= at.x && at.x <= right + border && top <= at.y && at.y <= bottom + border;
        if (!isIn(area.x - border, area.y - border)) continue;
        if (isIn(right - handleSide / zoom, bottom - handleSide / zoom))
            return { annotation, part: 'corner' };
        const isHeld =
            isNote(annotation) ||
            at.y <= area.y + titleHeight ||
            at.x <= area.x + border ||
            at.x >= right - border ||
            at.y >= bottom - border;
        if (isHeld) return { annotation, part: 'title' };
    }
    return undefined;
}

function isNote({ record }: AnnotationState): boolean {
    return record.kind === 'note';
}

/** Frames and notes in the order in which they are drawn. */
export function framesFirst({ annotations }: DocumentState): AnnotationState[] {
    const all = [...annotations.values()];
    return [...all.filter((annotation) => !isNote(annotation)), ...all.filter(isNote)];
}

export function drawAnnotations(
    context: CanvasRenderingContext2D,
    editor: Editor,
    viewport: Viewport,
    view: Box,
    colours: Colours,
): void {
    const { document, selectedAnnotations } = editor.store.get();
    for (const annotation of framesFirst(document)) {
        const area = editor.places.areaOf(annotation);
        if (!overlap(view, area)) continue;
        const isSelected = selectedAnnotations.has(annotation.number);
        drawOne(context, annotation, area, viewport.zoom, isSelected, colours);
    }
    context.globalAlpha = 1;
}

function drawOne(
    context: CanvasRenderingContext2D,
    annotation: AnnotationState,
    area: Box,
    zoom: number,
    isSelected: boolean,
    colours: Colours,
): void {
    const { text } = annotation.record;
    const { x, y, width, height } = area;
    const note = isNote(annotation);
    context.fillStyle = colourOf(annotation);
    context.globalAlpha = note ? 0.25 : 0.12;
    context.fillRect(x, y, width, height);
    if (!note) context.fillRect(x, y, width, titleHeight);
    context.globalAlpha = 1;
    context.strokeStyle = isSelected ? colours.selected : context.fillStyle;
    context.lineWidth = Math.max(isSelected ? 3 : 1.5, 1 / zoom);
    context.strokeRect(x, y, width, height);
    if (isSelected) {
        const side = handleSide / zoom;
        context.fillStyle = colours.selected;
        context.beginPath();
        context.moveTo(x + width, y + height - side);
        context.lineTo(x + width, y + height);
        context.lineTo(x + width - side, y + height);
        context.fill();
    }
    context.save();
    context.beginPath();
    context.rect(x, y, width, height);
    context.clip();
    context.fillStyle = colours.text;
    context.textBaseline = 'middle';
    if (note && zoom >= leastTextZoom) {
        context.font = '13px system-ui, sans-serif';
        linesOf(context, text, width - 16).forEach((line, i) =>
            context.fillText(line, x + 8, y + 16 + i * lineHeight),
        );
    } else if (!note) {
        // The title remains readable at a small zoom if the frame is large enough.
        const size = Math.min(Math.max(15, 12 / zoom), Math.max(15, height / 4));
        context.font = `600 ${size}px system-ui, sans-serif`;
        context.fillText(text.split('\n')[0]!, x + 10, y + Math.max(titleHeight, 1.4 * size) / 2, width - 20);
    }
    context.restore();
}

/** Breaks lines at spaces. A word that is longer than a line is not broken. */
function linesOf(context: CanvasRenderingContext2D, text: string, width: number): string[] {
    return text.split('\n').flatMap((paragraph) => {
        const lines: string[] = [];
        let line = '';
        for (const word of paragraph.split(' ')) {
            const longer = line === '' ? word : `${line} ${word}`;
            if (line !== '' && context.measureText(longer).width > width) {
                lines.push(line);
                line = word;
            } else {
                line = longer;
            }
        }
        return [...lines, line];
    });
}

export function drawPoints(
    context: CanvasRenderingContext2D,
    editor: Editor,
    curves: readonly { curve: Curve; box: Box; edge: EdgeState }[],
    view: Box,
    colours: Colours,
): void {
    const { selectedEdge, selectedPoint } = editor.store.get();
    for (const { curve, box, edge } of curves) {
        if (curve.through.length === 0 || !overlap(view, box)) continue;
        const isBright = edge.number === selectedEdge;
        context.fillStyle = isBright ? colours.selected : colours.types[curve.colour]!;
        curve.through.forEach((point, i) => {
            context.beginPath();
            context.arc(point.x, point.y, pointRadius, 0, 2 * Math.PI);
            context.fill();
            if (!isBright || i !== selectedPoint) return;
            context.strokeStyle = colours.text;
            context.lineWidth = 2;
            context.stroke();
        });
    }
}
