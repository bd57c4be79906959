import type { Point } from '../model/document.ts';
import type { Editor } from '../model/store.ts';
import { around, contains, type Box } from '../model/viewport.ts';
import { boxesOf, css } from './painter.ts';

const filledPart = 0.92;

/** A small map of the whole graph that shows which part is in view. */
export class Minimap {
    private readonly graph: HTMLCanvasElement;
    private boxes: ReturnType<typeof boxesOf> = [];
    private bounds: Box | undefined;

    constructor(private readonly canvas: HTMLCanvasElement) {
        this.graph = document.createElement('canvas');
        this.graph.width = canvas.width;
        this.graph.height = canvas.height;
    }

    /** Hides itself while everything is in view. */
    paint(editor: Editor, view: Box, accent: string): void {
        const boxes = boxesOf(editor);
        if (boxes !== this.boxes) {
            this.boxes = boxes;
            this.bounds = around(boxes.map(({ box }) => box));
            this.drawGraph();
        }
        const { canvas, bounds } = this;
        canvas.hidden = !bounds || contains(view, bounds);
        if (canvas.hidden) return;
        const context = canvas.getContext('2d')!;
        context.clearRect(0, 0, canvas.width, canvas.height);
        context.drawImage(this.graph, 0, 0);
        const corner = this.toMap(view);
        const scale = this.scale();
        context.strokeStyle = accent;
        context.lineWidth = 2;
        context.strokeRect(corner.x, corner.y, view.width * scale, view.height * scale);
    }

    /** The point of the graph at one of the map. */
    toGraph(at: Point): Point {
        const origin = this.toMap({ x: 0, y: 0 });
        return { x: (at.x - origin.x) / this.scale(), y: (at.y - origin.y) / this.scale() };
    }

    private drawGraph(): void {
        const context = this.graph.getContext('2d')!;
        context.clearRect(0, 0, this.graph.width, this.graph.height);
        const scale = this.scale();
        for (const { node, box } of this.boxes) {
            const corner = this.toMap(box);
            context.fillStyle = css(node.background);
            context.fillRect(
                corner.x,
                corner.y,
                Math.max(box.width * scale, 1.5),
                Math.max(box.height * scale, 1.5),
            );
        }
    }

    private scale(): number {
        const { bounds, canvas } = this;
        if (!bounds) return 1;
        return filledPart * Math.min(canvas.width / bounds.width, canvas.height / bounds.height);
    }

    private toMap(point: Point): Point {
        const { canvas } = this;
        const bounds = this.bounds ?? { x: 0, y: 0, width: 0, height: 0 };
        const scale = this.scale();
        return {
            x: (canvas.width - bounds.width * scale) / 2 + (point.x - bounds.x) * scale,
            y: (canvas.height - bounds.height * scale) / 2 + (point.y - bounds.y) * scale,
        };
    }
}
