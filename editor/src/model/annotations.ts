import { nodeById, positionOf, type DocumentState, type Point } from './document.ts';
import type { AnnotationRecord, AnnotationState, EdgeRecord, EdgeState, Step } from './messages.ts';
import { moveNodes } from './edits.ts';
import { portPoint, shapeOf } from './shape.ts';
import { around, type Box } from './viewport.ts';

/** Frames, notes and points of edges: the contents of frames, and changes as steps for the server. */

const padding = 24;
export const titleHeight = 32;
const farthest = 10_000_000;
const leastSide = 40;

export const noteSize = { width: 220, height: 90 };
export const emptyFrameSize = { width: 360, height: 240 };

/** New positions of nodes, areas of annotations and points of edges, by number. */
export interface Moves {
    nodes: ReadonlyMap<number, Point>;
    areas: ReadonlyMap<number, Box>;
    points: ReadonlyMap<number, readonly Point[]>;
}

export const noMoves: Moves = { nodes: new Map(), areas: new Map(), points: new Map() };

export function areaOf({ record }: AnnotationState): Box {
    const { x, y, width, height } = record;
    return { x, y, width, height };
}

export function colourOf({ record }: AnnotationState): string {
    return record.colour ?? (record.kind === 'note' ? '#d8b020' : '#808080');
}

export function titleOfAnnotation({ record }: AnnotationState): string {
    const [line = ''] = record.text.split('\n');
    return `${record.kind} “${line === '' ? record.id : line}”`;
}

/** Nodes and annotations, by number. */
export interface Items {
    nodes: Set<number>;
    annotations: Set<number>;
}

function isIn(area: Box, { x, y }: Point, width = 0, height = 0): boolean {
    return (
        area.x <= x && x + width <= area.x + area.width && area.y <= y && y + height <= area.y + area.height
    );
}

/** Adds the contents of the given frames: nodes and notes with their corner inside, and enclosed frames. */
export function withContents(
    document: DocumentState,
    nodes: Iterable<number>,
    annotations: Iterable<number>,
): Items {
    const items: Items = { nodes: new Set(nodes), annotations: new Set(annotations) };
    const frames = [...items.annotations].flatMap((number) => {
        const annotation = document.annotations.get(number);
        return annotation?.record.kind === 'frame' ? [areaOf(annotation)] : [];
    });
    for (const area of frames) {
        for (const node of document.nodes.values())
            if (isIn(area, positionOf(node))) items.nodes.add(node.number);
        for (const other of document.annotations.values()) {
            const { x, y, width, height } = other.record;
            const isInside =
                other.record.kind === 'note' ? isIn(area, { x, y }) : isIn(area, { x, y }, width, height);
            if (isInside) items.annotations.add(other.number);
        }
    }
    return items;
}

/** The positions of items, and the points of edges between two of the nodes. */
export function placesOf(document: DocumentState, pending: Moves, items: Items): Moves {
    const nodes = new Map<number, Point>();
    const ids = new Set<string>();
    for (const number of items.nodes) {
        const node = document.nodes.get(number);
        if (!node) continue;
        nodes.set(number, pending.nodes.get(number) ?? positionOf(node));
        ids.add(node.record.id);
    }
    const areas = new Map<number, Box>();
    for (const number of items.annotations) {
        const annotation = document.annotations.get(number);
        if (annotation) areas.set(number, pending.areas.get(number) ?? areaOf(annotation));
    }
    const points = new Map<number, readonly Point[]>();
    for (const { number, record } of document.edges.values())
        if (record.points && ids.has(record.tail) && ids.has(record.head))
            points.set(number, pending.points.get(number) ?? record.points);
    return { nodes, areas, points };
}

export function moved({ nodes, areas, points }: Moves, by: Point): Moves {
    const move = <T extends Point>(at: T): T => ({ ...at, x: at.x + by.x, y: at.y + by.y });
    const moveAll = <T extends Point>(places: ReadonlyMap<number, T>) =>
        new Map([...places].map(([number, at]) => [number, move(at)]));
    return {
        nodes: moveAll(nodes),
        areas: moveAll(areas),
        points: new Map([...points].map(([number, list]) => [number, list.map(move)])),
    };
}

/** Moves one of the points of an edge. */
export function pointMoved(edge: EdgeState, points: readonly Point[], index: number, by: Point): Moves {
    const move = (at: Point) => ({ x: at.x + by.x, y: at.y + by.y });
    const next = points.map((at, i) => (i === index ? move(at) : at));
    return { ...noMoves, points: new Map([[edge.number, next]]) };
}

export function isEmpty({ nodes, areas, points }: Moves): boolean {
    return nodes.size + areas.size + points.size === 0;
}

/** The area after its lower right corner is moved. */
export function resized(area: Box, by: Point): Box {
    return {
        ...area,
        width: Math.max(leastSide, area.width + by.x),
        height: Math.max(leastSide, area.height + by.y),
    };
}

function whole(value: number): number {
    return Math.min(farthest, Math.max(-farthest, Math.round(value)));
}

function wholePoint({ x, y }: Point): Point {
    return { x: whole(x), y: whole(y) };
}

export function setAnnotation(record: AnnotationRecord): Step {
    const side = (value: number) => Math.max(1, whole(value));
    return {
        do: 'setAnnotation',
        ...record,
        ...wholePoint(record),
        width: side(record.width),
        height: side(record.height),
    };
}

export function setPoints(edge: EdgeRecord, points: readonly Point[]): Step {
    const { tail, tailPort, head, headPort } = edge;
    return { do: 'setPoints', tail, tailPort, head, headPort, points: points.map(wholePoint) };
}

export function stepsOf(moves: Moves, document: DocumentState): Step[] {
    const areas = [...moves.areas].flatMap(([number, area]) => {
        const annotation = document.annotations.get(number);
        return annotation ? [setAnnotation({ ...annotation.record, ...area })] : [];
    });
    const points = [...moves.points].flatMap(([number, list]) => {
        const edge = document.edges.get(number);
        return edge ? [setPoints(edge.record, list)] : [];
    });
    return [...moveNodes(moves.nodes, document), ...areas, ...points];
}

export function remove(list: readonly AnnotationState[]): Step[] {
    return list.map(({ record }) => ({ do: 'removeAnnotation', id: record.id }));
}

/** Adds an annotation with an unused id. */
export function addAnnotation(
    document: DocumentState,
    kind: AnnotationRecord['kind'],
    area: Box,
): { id: string; steps: Step[] } {
    const taken = new Set([...document.annotations.values()].map(({ record }) => record.id));
    let id: string = kind;
    for (let i = 2; taken.has(id); ++i) id = `${kind}${i}`;
    const { width, height } = area;
    const step = {
        id,
        kind,
        text: '',
        ...wholePoint(area),
        width: Math.ceil(width),
        height: Math.ceil(height),
    };
    return { id, steps: [{ do: 'addAnnotation', ...step }] };
}

/** The area of a frame around items; undefined if there are none. */
export function areaAround(document: DocumentState, items: Items): Box | undefined {
    const nodes = [...items.nodes].flatMap((number) => document.nodes.get(number) ?? []);
    const annotations = [...items.annotations].flatMap((number) => document.annotations.get(number) ?? []);
    const box = around([
        ...nodes.map((node) => ({ ...positionOf(node), ...shapeOf(node) })),
        ...annotations.map(areaOf),
    ]);
    return (
        box && {
            x: box.x - padding,
            y: box.y - padding - titleHeight,
            width: box.width + 2 * padding,
            height: box.height + 2 * padding + titleHeight,
        }
    );
}

/** The start and the end of an edge; undefined if a node is missing. */
export function endsOf(
    document: DocumentState,
    edge: EdgeRecord,
    placeOf = positionOf,
): [Point, Point] | undefined {
    const tail = nodeById(document, edge.tail);
    const head = nodeById(document, edge.head);
    if (!tail || !head) return undefined;
    const [start, end] = [placeOf(tail), placeOf(head)];
    const [out, into] = [portPoint(tail, 'output', edge.tailPort), portPoint(head, 'input', edge.headPort)];
    return [
        { x: start.x + out.x, y: start.y + out.y },
        { x: end.x + into.x, y: end.y + into.y },
    ];
}

/** Inserts a point into an edge at the position that lengthens the edge the least. */
export function withPoint(
    document: DocumentState,
    edge: EdgeState,
    point: Point,
): { points: Point[]; index: number } {
    const points = edge.record.points ?? [];
    const ends = endsOf(document, edge.record);
    const way = ends ? [ends[0], ...points, ends[1]] : points;
    const distance = (a: Point, b: Point) => Math.hypot(a.x - b.x, a.y - b.y);
    let index = 0;
    let least = Infinity;
    for (let i = 0; i + 1 < way.length; ++i) {
        const [from, to] = [way[i]!, way[i + 1]!];
        const longer = distance(from, point) + distance(point, to) - distance(from, to);
        if (longer < least) {
            least = longer;
            index = i;
        }
    }
    return { points: [...points.slice(0, index), point, ...points.slice(index)], index };
}

/** The middle of the longest segment of an edge, for a new point that is added by keyboard. */
export function middleOf(document: DocumentState, edge: EdgeState): Point {
    const ends = endsOf(document, edge.record);
    const way = ends ? [ends[0], ...(edge.record.points ?? []), ends[1]] : [];
    let middle: Point = { x: 0, y: 0 };
    let longest = -1;
    for (let i = 0; i + 1 < way.length; ++i) {
        const [from, to] = [way[i]!, way[i + 1]!];
        const length = Math.hypot(to.x - from.x, to.y - from.y);
        if (length <= longest) continue;
        longest = length;
        middle = { x: (from.x + to.x) / 2, y: (from.y + to.y) / 2 };
    }
    return middle;
}
