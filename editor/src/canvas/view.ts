import type { RefObject } from 'react';
import type { Point } from '../model/document.ts';
import type { Shape } from '../model/shape.ts';
import { frame, toGraph, toScreen, type Box, type Viewport } from '../model/viewport.ts';

const farZoom = 0.4; // below this, text is too small to read

/** The position of the pointer on the screen. */
export function pointOf(event: { clientX: number; clientY: number }): Point {
    return { x: event.clientX, y: event.clientY };
}

/** The part of the graph that an element shows. */
export class View {
    viewport: Viewport = { x: 0, y: 0, zoom: 1 };
    /** Width of the panels that cover the right side, in pixels. */
    covered = 0;

    constructor(private readonly element: RefObject<HTMLElement | null>) {}

    /** Whether nodes are too small to read. */
    isFar(): boolean {
        return this.viewport.zoom < farZoom;
    }

    size(): Shape {
        const { clientWidth, clientHeight } = this.element.current!;
        return { width: clientWidth, height: clientHeight };
    }

    /** Converts a point on the screen to a point of the element. */
    toElement({ x, y }: Point): Point {
        const corner = this.element.current!.getBoundingClientRect();
        return { x: x - corner.x, y: y - corner.y };
    }

    /** Converts a point on the screen to graph coordinates. */
    toGraph(at: Point): Point {
        return toGraph(this.viewport, this.toElement(at));
    }

    /** Where the element shows a box of the graph, as a style. */
    styleOf(box: Box): { left: number; top: number; width: number; height: number } {
        const { zoom } = this.viewport;
        const { x, y } = toScreen(this.viewport, box);
        return { left: x, top: y, width: box.width * zoom, height: box.height * zoom };
    }

    /** Whether a point of the graph is in view and not covered by a panel. */
    shows(at: Point): boolean {
        const { x, y } = toScreen(this.viewport, at);
        const { width, height } = this.free();
        return x > 0 && y > 0 && x < width - 20 && y < height - 100;
    }

    /** The viewport that shows a box next to the panels. */
    framing(box: Box): Viewport {
        const { width, height } = this.free();
        return frame(box, { width, height: height - 40 });
    }

    centredOn({ x, y }: Point): Viewport {
        const { zoom } = this.viewport;
        const { width, height } = this.size();
        return { x: width / 2 - x * zoom, y: height / 2 - y * zoom, zoom };
    }

    private free(): Shape {
        const { width, height } = this.size();
        const left = width - this.covered;
        return { width: left > width / 2 ? left : width, height };
    }
}
