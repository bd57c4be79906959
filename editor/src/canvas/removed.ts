import type { Comparison } from '../model/comparison.ts';
import { nodeById, positionOf, type Point } from '../model/document.ts';
import type { EdgeRecord, NodeState } from '../model/messages.ts';
import { portPoint, shapeOf, titleOf } from '../model/shape.ts';
import type { Editor } from '../editor.ts';
import { overlap, visibleBox, type Viewport } from '../model/viewport.ts';
import { reachOf } from './painter.ts';

/** Draws nodes and edges that only the file on disk contains, faintly and at their old positions. */

const dash = [6, 4]; // in screen pixels

/** Must be called after `paint`, with the same canvas. */
export function paintRemoved(
    canvas: HTMLCanvasElement,
    editor: Editor,
    { removedNodes, removedEdges }: Comparison,
    viewport: Viewport,
    colour: string,
): void {
    const context = canvas.getContext('2d')!;
    const view = visibleBox(viewport, { width: canvas.clientWidth, height: canvas.clientHeight }, 0.02);
    context.save();
    context.strokeStyle = colour;
    context.fillStyle = colour;
    context.lineWidth = Math.max(2, 1 / viewport.zoom);
    context.setLineDash(dash.map((length) => length / viewport.zoom));
    context.font = '600 14px system-ui, sans-serif';
    context.textBaseline = 'middle';
    const byId = new Map(removedNodes.map((node) => [node.record.id, node]));
    for (const edge of removedEdges) strokeEdge(context, editor, byId, edge);
    for (const node of removedNodes) {
        const box = { ...positionOf(node), ...shapeOf(node) };
        if (!overlap(view, box)) continue;
        context.globalAlpha = 0.15;
        context.fillRect(box.x, box.y, box.width, box.height);
        context.globalAlpha = 0.8;
        context.strokeRect(box.x, box.y, box.width, box.height);
        context.fillText(`− ${titleOf(node)}`, box.x + 8, box.y + 20, box.width - 16);
    }
    context.restore();
}

function strokeEdge(
    context: CanvasRenderingContext2D,
    editor: Editor,
    removed: ReadonlyMap<string, NodeState>,
    edge: EdgeRecord,
): void {
    const { document } = editor.store.get();
    const end = (id: string, side: 'input' | 'output', port: string): Point | undefined => {
        const now = nodeById(document, id);
        const node = now ?? removed.get(id);
        if (!node) return undefined;
        const corner = now ? editor.places.placeOf(now) : positionOf(node);
        const at = portPoint(node, side, port);
        return { x: corner.x + at.x, y: corner.y + at.y };
    };
    const from = end(edge.tail, 'output', edge.tailPort);
    const to = end(edge.head, 'input', edge.headPort);
    if (!from || !to) return;
    const reach = reachOf({ from, to });
    context.globalAlpha = 0.6;
    context.beginPath();
    context.moveTo(from.x, from.y);
    context.bezierCurveTo(from.x + reach, from.y, to.x - reach, to.y, to.x, to.y);
    context.stroke();
}
