import { endsOf } from '../model/annotations.ts';
import { nodeById, type Point } from '../model/document.ts';
import type { EdgeState, NodeState } from '../model/messages.ts';
import { shapeOf, titleOf } from '../model/shape.ts';
import type { Editor } from '../editor.ts';
import type { Snapshot } from '../model/store.ts';
import { edgeKey } from '../model/comparison.ts';
import { around, overlap, visibleBox, type Box, type Viewport } from '../model/viewport.ts';
import { drawAnnotations, drawPoints } from './annotationPainter.ts';

/** Draws the edges and, at a small zoom, the nodes on one canvas. */

export interface Colours {
    types: string[];
    selected: string;
    error: string;
    warning: string;
    text: string;
    added: string;
    removed: string;
}

export function readColours(element: Element): Colours {
    const style = getComputedStyle(element);
    const value = (name: string) => style.getPropertyValue(name).trim();
    return {
        types: ['unknown', '1', '2', '3', '4'].map((name) => value(`--type-${name}`)),
        selected: value('--accent'),
        error: value('--error'),
        warning: value('--warning'),
        text: value('--text'),
        added: value('--added'),
        removed: value('--error'),
    };
}

export function boxOf(editor: Editor, node: NodeState): Box {
    return { ...editor.places.placeOf(node), ...shapeOf(node) };
}

/** A cubic Bézier curve: its ends and its two control points. */
type Piece = readonly [from: Point, leave: Point, arrive: Point, to: Point];

export interface Curve {
    pieces: readonly Piece[];
    /** The points where pieces meet. */
    through: readonly Point[];
    colour: number;
}

export function curveOf(editor: Editor, snapshot: Snapshot, edge: EdgeState): Curve | undefined {
    const tail = nodeById(snapshot.document, edge.record.tail);
    const ends = endsOf(snapshot.document, edge.record, editor.places.placeOf);
    if (!tail || !ends) return undefined;
    const components = tail.outputs?.find((port) => port.name === edge.record.tailPort)?.components;
    const through = editor.places.pointsOf(edge);
    return {
        pieces: piecesOf([ends[0], ...through, ends[1]]),
        through,
        colour: components && components <= 4 ? components : 0,
    };
}

/** The horizontal distance of a control point from its port. */
export function reachOf({ from, to }: { from: Point; to: Point }): number {
    const across = to.x - from.x;
    return across >= 0 ? Math.max(across / 2, 24) : Math.min(24 + Math.abs(across) / 2, 160);
}

/** The curve is horizontal at ports; at each point in between, it is parallel to the line between the neighbours. */
function piecesOf(way: readonly Point[]): Piece[] {
    const last = way.length - 1;
    const pull = (i: number, share: number, reach: number): Point => {
        const at = way[i]!;
        if (i === 0 || i === last) return { x: at.x + Math.sign(share) * reach, y: at.y };
        const [before, after] = [way[i - 1]!, way[i + 1]!];
        return { x: at.x + share * (after.x - before.x), y: at.y + share * (after.y - before.y) };
    };
    return way.slice(1).map((to, i) => {
        const from = way[i]!;
        const reach = reachOf({ from, to });
        return [from, pull(i, 1 / 6, reach), pull(i + 1, -1 / 6, reach), to];
    });
}

function boxOfCurve({ pieces }: Curve): Box {
    return around(pieces.flat().map((point) => ({ ...point, width: 0, height: 0 })))!;
}

/** The edge nearest to a point of the graph, within a distance in graph units. */
export function edgeAt(editor: Editor, point: Point, distance: number): number | null {
    let nearest: number | null = null;
    let least = distance;
    const around = {
        x: point.x - distance,
        y: point.y - distance,
        width: 2 * distance,
        height: 2 * distance,
    };
    for (const { curve, box, edge } of sceneOf(editor).curves) {
        if (!overlap(around, box)) continue;
        const away = distanceTo(curve, point);
        if (away < least) {
            least = away;
            nearest = edge.number;
        }
    }
    return nearest;
}

function distanceTo(curve: Curve, point: Point): number {
    return Math.min(...curve.pieces.map((piece) => distanceToPiece(piece, point)));
}

function distanceToPiece([from, leave, arrive, to]: Piece, point: Point): number {
    const parts = 32;
    let least = Infinity;
    let last = from;
    for (let i = 1; i <= parts; ++i) {
        const t = i / parts;
        const s = 1 - t;
        const a = s * s * s;
        const b = 3 * s * s * t;
        const c = 3 * s * t * t;
        const d = t * t * t;
        const next = {
            x: a * from.x + b * leave.x + c * arrive.x + d * to.x,
            y: a * from.y + b * leave.y + c * arrive.y + d * to.y,
        };
        least = Math.min(least, distanceToLine(last, next, point));
        last = next;
    }
    return least;
}

/** The point of an edge within a distance; if there are several, one of the selected edge. */
export function pointAt(
    editor: Editor,
    at: Point,
    distance: number,
): { edge: EdgeState; index: number } | undefined {
    let found: { edge: EdgeState; index: number } | undefined;
    for (const { curve, edge } of sceneOf(editor).curves)
        curve.through.forEach((point, index) => {
            const isNear = Math.hypot(point.x - at.x, point.y - at.y) <= distance;
            const isFirst = !found || edge.number === editor.store.get().selectedEdge;
            if (isNear && isFirst) found = { edge, index };
        });
    return found;
}

function distanceToLine(a: Point, b: Point, p: Point): number {
    const x = b.x - a.x;
    const y = b.y - a.y;
    const length = x * x + y * y;
    const t = length === 0 ? 0 : Math.min(1, Math.max(0, ((p.x - a.x) * x + (p.y - a.y) * y) / length));
    return Math.hypot(a.x + t * x - p.x, a.y + t * y - p.y);
}

export function nodeAt(editor: Editor, point: Point): NodeState | undefined {
    let found: NodeState | undefined;
    for (const { node, box } of sceneOf(editor).boxes)
        if (overlap(box, { ...point, width: 0, height: 0 })) found = node;
    return found;
}

export function css(rgba: number[] | undefined): string {
    const [r, g, b] = (rgba ?? [0.4, 0.4, 0.4]).map((value) => Math.round(255 * value));
    return `rgb(${r} ${g} ${b})`;
}

/** The curves of all edges and the boxes of all nodes. They do not depend on the view. */
interface Scene {
    snapshot: Snapshot;
    curves: { curve: Curve; box: Box; edge: EdgeState }[];
    boxes: { node: NodeState; box: Box }[];
}

let lastScene: Scene | undefined;

function sceneOf(editor: Editor): Scene {
    const snapshot = editor.store.get();
    const old = lastScene;
    if (old?.snapshot.document !== snapshot.document) lastScene = makeScene(editor, snapshot);
    else if (old.snapshot.moves !== snapshot.moves) lastScene = moveScene(editor, snapshot, old);
    return lastScene!;
}

/** The boxes of all nodes; the same list until a node changes. */
export function boxesOf(editor: Editor): Scene['boxes'] {
    return sceneOf(editor).boxes;
}

function makeScene(editor: Editor, snapshot: Snapshot): Scene {
    const boxes = [...snapshot.document.nodes.values()].map((node) => ({ node, box: boxOf(editor, node) }));
    const curves = [...snapshot.document.edges.values()].flatMap((edge) => {
        const curve = curveOf(editor, snapshot, edge);
        return curve ? [{ curve, box: boxOfCurve(curve), edge }] : [];
    });
    return { snapshot, curves, boxes };
}

/** Updates only what depends on the nodes that are being dragged. */
function moveScene(editor: Editor, snapshot: Snapshot, old: Scene): Scene {
    const both = [snapshot.moves, old.snapshot.moves];
    const moved = new Set(both.flatMap(({ nodes }) => [...nodes.keys()]));
    const bent = new Set(both.flatMap(({ points }) => [...points.keys()]));
    const ids = new Set([...moved].map((number) => snapshot.document.nodes.get(number)?.record.id));
    const boxes = old.boxes.map((entry) =>
        moved.has(entry.node.number) ? { ...entry, box: boxOf(editor, entry.node) } : entry,
    );
    const curves = old.curves.map((entry) => {
        const { tail, head } = entry.edge.record;
        if (!ids.has(tail) && !ids.has(head) && !bent.has(entry.edge.number)) return entry;
        const curve = curveOf(editor, snapshot, entry.edge)!;
        return { ...entry, curve, box: boxOfCurve(curve) };
    });
    return { snapshot, curves, boxes };
}

const pathLength = 32; // in edges; longer paths are slow to draw without a graphics card

/** Strokes all edges of a colour together, which is much faster than stroking each separately. */
function drawEdges(
    context: CanvasRenderingContext2D,
    editor: Editor,
    viewport: Viewport,
    view: Box,
    colours: Colours,
): void {
    const { document, selection, selectedEdge, comparison } = editor.store.get();
    const isCurved = viewport.zoom > 0.15;
    const strokes = [...colours.types, colours.added, colours.selected];
    const groups: Curve[][] = strokes.map(() => []);
    const bright = groups.length - 1;
    const added = bright - 1;
    for (const { curve, box, edge } of sceneOf(editor).curves) {
        if (!overlap(view, box)) continue;
        const touches = (id: string) => selection.has(document.numbers.get(id) ?? -1);
        const isBright =
            edge.number === selectedEdge ||
            (selection.size > 0 && (touches(edge.record.tail) || touches(edge.record.head)));
        const isNew = comparison?.newEdges.has(edgeKey(edge.record));
        groups[isBright ? bright : isNew ? added : curve.colour]!.push(curve);
    }
    groups.forEach((curves, i) => {
        context.lineWidth = Math.max(i >= added ? 3 : 2, 1 / viewport.zoom);
        context.strokeStyle = strokes[i]!;
        for (let first = 0; first < curves.length; first += pathLength) {
            context.beginPath();
            for (const curve of curves.slice(first, first + pathLength)) addCurve(context, curve, isCurved);
            context.stroke();
        }
    });
}

function addCurve(context: CanvasRenderingContext2D, { pieces }: Curve, isCurved: boolean): void {
    const [start] = pieces[0]!;
    context.moveTo(start.x, start.y);
    for (const [, leave, arrive, to] of pieces) {
        if (isCurved) context.bezierCurveTo(leave.x, leave.y, arrive.x, arrive.y, to.x, to.y);
        else context.lineTo(to.x, to.y);
    }
}

function drawNodes(
    context: CanvasRenderingContext2D,
    editor: Editor,
    viewport: Viewport,
    view: Box,
    colours: Colours,
): void {
    const { selection, problems, comparison } = editor.store.get();
    const severities = new Map<string, string>();
    for (const problem of problems)
        if (problem.node && severities.get(problem.node) !== 'error')
            severities.set(problem.node, problem.severity);
    const hasTitles = viewport.zoom > 0.2;
    context.font = '20px system-ui, sans-serif';
    context.textBaseline = 'middle';
    for (const { node, box } of sceneOf(editor).boxes) {
        if (!overlap(view, box)) continue;
        context.fillStyle = css(node.background);
        context.fillRect(box.x, box.y, box.width, box.height);
        const severity = severities.get(node.record.id);
        const outline = selection.has(node.number)
            ? colours.selected
            : severity === 'error'
              ? colours.error
              : severity === 'warning'
                ? colours.warning
                : comparison?.nodes.has(node.record.id)
                  ? colours.added
                  : undefined;
        if (outline) {
            context.strokeStyle = outline;
            context.lineWidth = 3 / viewport.zoom;
            context.strokeRect(box.x, box.y, box.width, box.height);
        }
        if (hasTitles) {
            context.fillStyle = css(node.foreground);
            context.fillText(titleOf(node), box.x + 8, box.y + box.height / 2, box.width - 16);
        }
    }
}

export function paint(
    canvas: HTMLCanvasElement,
    editor: Editor,
    viewport: Viewport,
    colours: Colours,
    isFar: boolean,
): void {
    const context = canvas.getContext('2d')!;
    const ratio = window.devicePixelRatio;
    const size = { width: canvas.clientWidth, height: canvas.clientHeight };
    const width = Math.round(size.width * ratio);
    const height = Math.round(size.height * ratio);
    if (canvas.width !== width || canvas.height !== height) {
        canvas.width = width;
        canvas.height = height;
    }
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.clearRect(0, 0, width, height);
    const scale = viewport.zoom * ratio;
    context.setTransform(scale, 0, 0, scale, viewport.x * ratio, viewport.y * ratio);
    const view = visibleBox(viewport, size, 0.02);
    drawAnnotations(context, editor, viewport, view, colours);
    drawEdges(context, editor, viewport, view, colours);
    if (!isFar) drawPoints(context, editor, sceneOf(editor).curves, view, colours);
    if (isFar) drawNodes(context, editor, viewport, view, colours);
}
