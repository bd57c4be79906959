import { colourOf } from '../model/annotations.ts';
import type { DocumentState, Point } from '../model/document.ts';
import type { Editor } from '../editor.ts';
import { around, contains, type Box } from '../model/viewport.ts';
import { framesFirst } from './annotationPainter.ts';
import { boxesOf, css } from './painter.ts';

const filledPart = 0.92;

/** A small map of the whole graph that shows which part is in view. */
export class Minimap {
    private readonly graph: HTMLCanvasElement;
    private document: DocumentState | undefined;
    private isDrawn = false;
    private bounds: Box | undefined;

    constructor(private readonly canvas: HTMLCanvasElement) {
        this.graph = document.createElement('canvas');
        this.graph.width = canvas.width;
        this.graph.height = canvas.height;
    }

    /** Hides the map while everything is in view. Dragged nodes remain at their old positions until they are dropped. */
    paint(editor: Editor, view: Box, accent: string): void {
        const { document } = editor.store.get();
        if (document !== this.document) {
            this.document = document;
            this.isDrawn = false;
            const areas = [...document.annotations.values()].map((annotation) =>
                editor.places.areaOf(annotation),
            );
            this.bounds = around([...boxesOf(editor).map(({ box }) => box), ...areas]);
        }
        const { canvas, bounds } = this;
        canvas.hidden = !bounds || contains(view, bounds);
        if (canvas.hidden) return;
        if (!this.isDrawn) this.drawGraph(editor);
        const context = canvas.getContext('2d')!;
        context.clearRect(0, 0, canvas.width, canvas.height);
        context.drawImage(this.graph, 0, 0);
        const corner = this.toMap(view);
        const scale = this.scale();
        context.strokeStyle = accent;
        context.lineWidth = 2;
        context.strokeRect(corner.x, corner.y, view.width * scale, view.height * scale);
    }

    /** Converts a point of the map to graph coordinates. */
    toGraph(at: Point): Point {
        const origin = this.toMap({ x: 0, y: 0 });
        return { x: (at.x - origin.x) / this.scale(), y: (at.y - origin.y) / this.scale() };
    }

    private drawGraph(editor: Editor): void {
        this.isDrawn = true;
        const context = this.graph.getContext('2d')!;
        context.clearRect(0, 0, this.graph.width, this.graph.height);
        const scale = this.scale();
        const fill = (box: Box, colour: string) => {
            const corner = this.toMap(box);
            const [width, height] = [box.width * scale, box.height * scale];
            context.fillStyle = colour;
            context.fillRect(corner.x, corner.y, Math.max(width, 1.5), Math.max(height, 1.5));
        };
        context.globalAlpha = 0.4;
        for (const annotation of framesFirst(editor.store.get().document))
            fill(editor.places.areaOf(annotation), colourOf(annotation));
        context.globalAlpha = 1;
        for (const { node, box } of boxesOf(editor)) fill(box, css(node.background));
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
