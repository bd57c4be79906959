import type { Point } from './document.ts';
import type { Shape } from './shape.ts';

/** A point x of the graph is at the screen coordinate x * zoom + viewport.x, and likewise for y. */
export interface Viewport extends Point {
    zoom: number;
}

export interface Box extends Point {
    width: number;
    height: number;
}

export const leastZoom = 0.02;
export const greatestZoom = 2;

export function toGraph(viewport: Viewport, at: Point): Point {
    return { x: (at.x - viewport.x) / viewport.zoom, y: (at.y - viewport.y) / viewport.zoom };
}

export function toScreen({ x, y, zoom }: Viewport, at: Point): Point {
    return { x: at.x * zoom + x, y: at.y * zoom + y };
}

export function zoomAt(viewport: Viewport, at: Point, factor: number): Viewport {
    const zoom = Math.min(greatestZoom, Math.max(leastZoom, viewport.zoom * factor));
    const fixed = toGraph(viewport, at);
    return { x: at.x - fixed.x * zoom, y: at.y - fixed.y * zoom, zoom };
}

/** Handles a wheel event: the wheel of a mouse and a pinch zoom; two fingers on a trackpad move the view. */
export function wheel(
    viewport: Viewport,
    event: { deltaX: number; deltaY: number; deltaMode: number; ctrlKey: boolean; shiftKey: boolean },
    at: Point,
): Viewport {
    const isMouse = event.deltaMode !== 0 || (event.deltaX === 0 && Math.abs(event.deltaY) >= 50);
    if (event.ctrlKey) return zoomAt(viewport, at, Math.exp(-event.deltaY * (isMouse ? 0.002 : 0.01)));
    if (isMouse && !event.shiftKey) {
        const pixels = event.deltaMode === 0 ? event.deltaY : event.deltaY * 33;
        return zoomAt(viewport, at, Math.exp(-pixels * 0.002));
    }
    const [x, y] = event.shiftKey && event.deltaX === 0 ? [event.deltaY, 0] : [event.deltaX, event.deltaY];
    return { ...viewport, x: viewport.x - x, y: viewport.y - y };
}

export function around(boxes: Iterable<Box>): Box | undefined {
    let left = Infinity;
    let top = Infinity;
    let right = -Infinity;
    let bottom = -Infinity;
    for (const box of boxes) {
        left = Math.min(left, box.x);
        top = Math.min(top, box.y);
        right = Math.max(right, box.x + box.width);
        bottom = Math.max(bottom, box.y + box.height);
    }
    return left <= right ? { x: left, y: top, width: right - left, height: bottom - top } : undefined;
}

/** The viewport in which a box fills the given part of the window, which starts at the upper left corner. */
export function frame(box: Box, part: Shape): Viewport {
    const margin = 40;
    const width = Math.max(part.width - 2 * margin, 100);
    const height = Math.max(part.height - 2 * margin, 100);
    const fitting = Math.min(width / box.width, height / box.height, 1);
    const zoom = Math.max(leastZoom, fitting);
    return {
        x: margin + (width - box.width * zoom) / 2 - box.x * zoom,
        y: margin + (height - box.height * zoom) / 2 - box.y * zoom,
        zoom,
    };
}

export function visibleBox(viewport: Viewport, window: Shape, margin: number): Box {
    const corner = toGraph(viewport, { x: -margin * window.width, y: -margin * window.height });
    const share = (1 + 2 * margin) / viewport.zoom;
    return { ...corner, width: window.width * share, height: window.height * share };
}

export function overlap(a: Box, b: Box): boolean {
    return a.x <= b.x + b.width && b.x <= a.x + a.width && a.y <= b.y + b.height && b.y <= a.y + a.height;
}

export function contains(outer: Box, inner: Box): boolean {
    return (
        outer.x <= inner.x &&
        outer.y <= inner.y &&
        outer.x + outer.width >= inner.x + inner.width &&
        outer.y + outer.height >= inner.y + inner.height
    );
}
