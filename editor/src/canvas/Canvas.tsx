import {
    Position,
    ReactFlow,
    useConnection,
    type Connection,
    type FinalConnectionState,
    type NodeHandle,
    type ReactFlowInstance,
    type ReactFlowProps,
} from '@xyflow/react';
import { memo, useCallback, useEffect, useMemo, useRef, useState } from 'react';
import { isEmpty, moved as movedBy, noMoves, resized, titleOfAnnotation } from '../model/annotations.ts';
import type { Moves } from '../model/annotations.ts';
import { componentsAt, whyNot } from '../model/connect.ts';
import type { Point } from '../model/document.ts';
import type { AnnotationState, EdgeRecord, EdgeState, NodeState, Problem } from '../model/messages.ts';
import { portTop, shapeOf, titleOf } from '../model/shape.ts';
import type { Editor } from '../editor.ts';
import type { Snapshot } from '../model/store.ts';
import { contains, frame, greatestZoom, leastZoom, overlap, toGraph, toScreen } from '../model/viewport.ts';
import { visibleBox, wheel, around, type Box, type Viewport } from '../model/viewport.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { Minimap } from './minimap.ts';
import { NodeCard, type CardNode } from './NodeCard.tsx';
import { AnnotationText } from './AnnotationText.tsx';
import { annotationAt } from './annotationPainter.ts';
import { boxOf, edgeAt, nodeAt, paint, pointAt, readColours } from './painter.ts';
import { paintRemoved } from './removed.ts';

/**
 * The graph. React Flow shows the nodes near the view and handles dragging and new edges; a canvas
 * below it shows all edges, and all nodes if they are too small to read. Only this file and NodeCard
 * use React Flow.
 */

/** The canvas as the rest of the page can use it. */
export interface CanvasHandle {
    viewport(): Viewport;
    /** Converts a point on the screen to graph coordinates. */
    toGraph(at: Point): Point;
    /** Whether a point of the graph is in view and not covered by a panel. */
    shows(at: Point): boolean;
    pointer(): Point;
    /** Moves the view to nodes and annotations, or to the whole graph if neither are given. */
    frame(numbers?: Iterable<number>, annotations?: Iterable<number>): void;
}

const farZoom = 0.4; // below this, text is too small to read
const hitDistance = 7; // in screen pixels
const regionMargin = 0.3; // on each side of the visible area, relative to its size
const largestRegion = 2.5; // width relative to that of the visible area
const nodeTypes = { card: NodeCard };
const noProblems: readonly Problem[] = [];
const panButtons = [1, 2];
/** Re-renders only if a property is a different object, because React Flow then re-renders every node. */
const Flow = memo(ReactFlow<CardNode>);

/** Creates React Flow's nodes. Unchanged nodes and lists remain the same objects, so they are not re-rendered. */
class CardCache {
    private cards = new Map<number, { card: CardNode; parts: unknown[] }>();
    private list: CardNode[] = [];

    cardsOf(editor: Editor, snapshot: Snapshot, region: Box, lit: ReadonlySet<string>): CardNode[] {
        const problems = new Map<string, Problem[]>();
        for (const problem of snapshot.problems) {
            if (!problem.node) continue;
            const list = problems.get(problem.node);
            if (list) list.push(problem);
            else problems.set(problem.node, [problem]);
        }
        const next = new Map<number, { card: CardNode; parts: unknown[] }>();
        for (const node of snapshot.document.nodes.values()) {
            const place = editor.places.placeOf(node);
            if (!overlap(region, { ...place, ...shapeOf(node) })) continue;
            const own = problems.get(node.record.id) ?? noProblems;
            const isSelected = snapshot.selection.has(node.number);
            const pinned = snapshot.pinned?.node === node.record.id ? snapshot.pinned.port : null;
            const isLit = lit.has(node.record.id);
            const text = own.map(({ severity, port, message }) => [severity, port, message]).join();
            const shown =
                editor.thumbnails.isShownOn(node) && snapshot.thumbnails.get(node.record.id)?.picture;
            const thumbnail = shown || null;
            const mark = snapshot.comparison?.nodes.get(node.record.id) ?? null;
            const parts = [node, place.x, place.y, text, isSelected, pinned, isLit, thumbnail, mark];
            const old = this.cards.get(node.number);
            const isSame = old && parts.every((part, i) => part === old.parts[i]);
            const data = { node, problems: own, pinned, isLit, thumbnail, mark };
            next.set(node.number, isSame ? old : { card: makeCard(node, place, isSelected, data), parts });
        }
        this.cards = next;
        const list = [...next.values()].map(({ card }) => card);
        const isSameList = list.length === this.list.length && list.every((card, i) => card === this.list[i]);
        if (!isSameList) this.list = list;
        return this.list;
    }
}

function makeCard(node: NodeState, position: Point, selected: boolean, data: CardNode['data']): CardNode {
    const { width, height } = shapeOf(node);
    const handle = (id: string, index: number, type: 'source' | 'target'): NodeHandle => ({
        id,
        type,
        position: type === 'source' ? Position.Right : Position.Left,
        x: (type === 'source' ? width : 0) - 6,
        y: portTop(index) - 6,
        width: 12,
        height: 12,
    });
    return {
        id: String(node.number),
        type: 'card',
        position,
        selected,
        data,
        width,
        height,
        handles: [
            ...(node.inputs ?? []).map((port, i) => handle(port.name, i, 'target')),
            ...(node.outputs ?? []).map((port, i) => handle(port.name, i, 'source')),
        ],
    };
}

/** Returns functions that remain the same objects and call the functions of the latest render. */
function useSteady<T extends object>(functions: T): T {
    const last = useRef(functions);
    last.current = functions;
    const [steady] = useState(() => {
        const names = Object.keys(functions) as (keyof T)[];
        const call =
            (name: keyof T) =>
            (...values: unknown[]) =>
                (last.current[name] as (...values: unknown[]) => unknown)(...values);
        return Object.fromEntries(names.map((name) => [name, call(name)])) as T;
    });
    return steady;
}

function recordOf(snapshot: Snapshot, connection: Connection): EdgeRecord | undefined {
    const tail = snapshot.document.nodes.get(Number(connection.source));
    const head = snapshot.document.nodes.get(Number(connection.target));
    if (!tail || !head || !connection.sourceHandle || !connection.targetHandle) return undefined;
    return {
        tail: tail.record.id,
        tailPort: connection.sourceHandle,
        head: head.record.id,
        headPort: connection.targetHandle,
    };
}

/** Shows next to the pointer why the edge that is being dragged cannot be connected there. */
function ConnectionHint() {
    const editor = useEditor();
    const { inProgress, fromHandle, toHandle, isValid } = useConnection();
    const pointer = useRef({ x: 0, y: 0 });
    useEffect(() => {
        const move = (event: PointerEvent) => {
            pointer.current = { x: event.clientX, y: event.clientY };
        };
        window.addEventListener('pointermove', move, true);
        return () => window.removeEventListener('pointermove', move, true);
    }, []);
    if (!inProgress || !toHandle || isValid || toHandle === fromHandle) return null;
    const [tail, head] = fromHandle.type === 'source' ? [fromHandle, toHandle] : [toHandle, fromHandle];
    const now = editor.store.get();
    const record = recordOf(now, {
        source: tail.nodeId,
        target: head.nodeId,
        sourceHandle: tail.id ?? null,
        targetHandle: head.id ?? null,
    });
    const reason = record ? whyNot(now.document, now.catalogue, record) : '';
    if (reason === '') return null;
    return (
        <div
            className="hint"
            role="status"
            style={{ left: pointer.current.x + 14, top: pointer.current.y + 14 }}
        >
            {reason}
        </div>
    );
}

const connectionHint = <ConnectionHint />; // a single object, so that Flow is not re-rendered

type Gesture =
    | { kind: 'box'; from: Point; added: ReadonlySet<number>; addedAnnotations: ReadonlySet<number> }
    | { kind: 'move'; from: Point; places: Moves }
    | { kind: 'resize'; from: Point; annotation: AnnotationState; area: Box }
    | { kind: 'point'; from: Point; edge: EdgeState; index: number };

export function Canvas({
    lit,
    covered,
    onReady,
}: {
    lit: ReadonlySet<string>;
    /** Width of the panels that cover the right side, in pixels. */
    covered: number;
    onReady: (handle: CanvasHandle) => void;
}) {
    const editor = useEditor();
    const snapshot = useSnapshot((all) => all);
    const root = useRef<HTMLDivElement>(null);
    const canvas = useRef<HTMLCanvasElement>(null);
    const map = useRef<HTMLCanvasElement>(null);
    const minimap = useRef<Minimap | null>(null);
    const flow = useRef<ReactFlowInstance<CardNode> | null>(null);
    const latestCovered = useRef(covered);
    latestCovered.current = covered;
    const viewport = useRef<Viewport>({ x: 0, y: 0, zoom: 1 });
    const pointer = useRef<Point>({ x: 300, y: 300 });
    const gesture = useRef<Gesture | null>(null);
    const [cache] = useState(() => new CardCache());
    const [isFar, setFar] = useState(false);
    const [region, setRegion] = useState<Box | null>(null); // null until the first view is known
    const [box, setBox] = useState<Box | null>(null);
    const [edited, setEdited] = useState<number | null>(null); // the annotation whose text is being edited
    const colours = useRef<ReturnType<typeof readColours> | null>(null);

    const frameRequest = useRef(0);
    const draw = useCallback(() => {
        cancelAnimationFrame(frameRequest.current);
        frameRequest.current = requestAnimationFrame(() => {
            if (!canvas.current) return;
            colours.current ??= readColours(canvas.current);
            paint(canvas.current, editor, viewport.current, colours.current, viewport.current.zoom < farZoom);
            const { comparison } = editor.store.get();
            if (comparison)
                paintRemoved(canvas.current, editor, comparison, viewport.current, colours.current.removed);
            const size = { width: canvas.current.clientWidth, height: canvas.current.clientHeight };
            minimap.current ??= new Minimap(map.current!);
            minimap.current.paint(editor, visibleBox(viewport.current, size, 0), colours.current.selected);
        });
    }, [editor]);

    const moved = useCallback(
        (next: Viewport) => {
            viewport.current = next;
            root.current!.querySelector<HTMLElement>('.annotation-text')?.blur(); // it does not move with the view
            if (editor.store.get().file === '') return; // the first view is set when the document arrives
            const far = next.zoom < farZoom;
            setFar(far);
            const size = { width: root.current!.clientWidth, height: root.current!.clientHeight };
            const seen = visibleBox(next, size, 0);
            const isFitting = (old: Box) => contains(old, seen) && old.width < largestRegion * seen.width;
            if (!far)
                setRegion((old) => (old && isFitting(old) ? old : visibleBox(next, size, regionMargin)));
            draw();
        },
        [draw, editor],
    );

    const goTo = useCallback((next: Viewport) => void flow.current?.setViewport(next), []);

    useEffect(() => {
        const at = (point: Point) => {
            const corner = root.current!.getBoundingClientRect();
            return { x: point.x - corner.x, y: point.y - corner.y };
        };
        const element = root.current!;
        const free = () => {
            const { clientWidth, clientHeight } = element;
            const width = clientWidth - latestCovered.current;
            return { width: width > clientWidth / 2 ? width : clientWidth, height: clientHeight };
        };
        const turn = (event: WheelEvent) => {
            event.preventDefault();
            event.stopPropagation();
            goTo(wheel(viewport.current, event, at({ x: event.clientX, y: event.clientY })));
        };
        const resized = new ResizeObserver(draw);
        const scheme = window.matchMedia('(prefers-color-scheme: dark)');
        const recolour = () => {
            colours.current = null;
            draw();
        };
        element.addEventListener('wheel', turn, { passive: false, capture: true });
        resized.observe(element);
        scheme.addEventListener('change', recolour);
        onReady({
            viewport: () => viewport.current,
            toGraph: (point) => toGraph(viewport.current, at(point)),
            shows: (point) => {
                const { x, y } = toScreen(viewport.current, point);
                const { width, height } = free();
                return x > 0 && y > 0 && x < width - 20 && y < height - 100;
            },
            pointer: () => pointer.current,
            frame: (numbers, chosenAnnotations = []) => {
                const { nodes, annotations } = editor.store.get().document;
                const isAll = numbers === undefined;
                const chosen = isAll ? [...nodes.values()] : [...numbers].flatMap((n) => nodes.get(n) ?? []);
                const areas = isAll
                    ? [...annotations.values()]
                    : [...chosenAnnotations].flatMap((n) => annotations.get(n) ?? []);
                const wanted = around([
                    ...chosen.map((node) => boxOf(editor, node)),
                    ...areas.map((annotation) => editor.places.areaOf(annotation)),
                ]);
                const { width, height } = free();
                const next = wanted ? frame(wanted, { width, height: height - 40 }) : viewport.current;
                goTo(next);
                moved(next);
            },
        });
        return () => {
            element.removeEventListener('wheel', turn, { capture: true });
            resized.disconnect();
            scheme.removeEventListener('change', recolour);
        };
    }, [draw, editor, goTo, moved, onReady]);

    useEffect(draw, [draw, snapshot, isFar]);

    const cards = useMemo(
        () => (isFar || !region ? [] : cache.cardsOf(editor, snapshot, region, lit)),
        [cache, editor, isFar, lit, region, snapshot],
    );

    useEffect(() => editor.thumbnails.want(cards.map((card) => card.data.node.record.id)), [cards, editor]);

    const place = (event: { clientX: number; clientY: number }) => {
        const corner = root.current!.getBoundingClientRect();
        return toGraph(viewport.current, { x: event.clientX - corner.x, y: event.clientY - corner.y });
    };

    const toggled = (numbers: ReadonlySet<number>, number: number) => {
        const next = new Set(numbers);
        if (!next.delete(number)) next.add(number);
        return next;
    };

    const pick = (number: number, isAdding: boolean) => {
        const { selection, selectedAnnotations } = editor.store.get();
        if (isAdding) editor.selection.select(toggled(selection, number), selectedAnnotations);
        else if (!selection.has(number)) editor.selection.select([number]);
    };

    const pickAnnotation = (number: number, isAdding: boolean) => {
        const { selection, selectedAnnotations } = editor.store.get();
        if (isAdding) editor.selection.select(selection, toggled(selectedAnnotations, number));
        else if (!selectedAnnotations.has(number)) editor.selection.select([], [number]);
    };

    const pressOnPane = (event: React.PointerEvent) => {
        pointer.current = { x: event.clientX, y: event.clientY };
        const isPane = (event.target as Element).classList.contains('react-flow__pane');
        if (event.button !== 0 || !isPane) return;
        root.current!.focus();
        const point = place(event);
        const node = isFar ? nodeAt(editor, point) : undefined;
        const { zoom } = viewport.current;
        const bend = isFar ? undefined : pointAt(editor, point, hitDistance / zoom);
        const held = annotationAt(editor, point, zoom);
        const isResized =
            held?.part === 'corner' && editor.store.get().selectedAnnotations.has(held.annotation.number);
        const edge = node || bend || isResized ? null : edgeAt(editor, point, hitDistance / zoom);
        if (node) {
            pick(node.number, event.shiftKey);
            gesture.current = { kind: 'move', from: point, places: editor.places.held() };
        } else if (bend) {
            editor.selection.selectEdge(bend.edge.number, bend.index);
            gesture.current = { kind: 'point', from: point, ...bend };
        } else if (edge !== null) {
            editor.selection.selectEdge(edge);
            return;
        } else if (held) {
            const { annotation, part } = held;
            pickAnnotation(annotation.number, event.shiftKey);
            gesture.current =
                part === 'corner'
                    ? { kind: 'resize', from: point, annotation, area: editor.places.areaOf(annotation) }
                    : { kind: 'move', from: point, places: editor.places.held() };
        } else {
            const { selection, selectedAnnotations } = editor.store.get();
            const added = event.shiftKey ? selection : new Set<number>();
            const addedAnnotations = event.shiftKey ? selectedAnnotations : new Set<number>();
            gesture.current = { kind: 'box', from: point, added, addedAnnotations };
            editor.selection.select(added, addedAnnotations);
        }
        root.current!.setPointerCapture(event.pointerId);
    };

    const movePointer = (event: React.PointerEvent) => {
        pointer.current = { x: event.clientX, y: event.clientY };
        const current = gesture.current;
        if (!current) return;
        const point = place(event);
        if (current.kind !== 'box') {
            dragBy(current, { x: point.x - current.from.x, y: point.y - current.from.y });
            return;
        }
        const x = Math.min(point.x, current.from.x);
        const y = Math.min(point.y, current.from.y);
        const drawn = {
            x,
            y,
            width: Math.abs(point.x - current.from.x),
            height: Math.abs(point.y - current.from.y),
        };
        setBox(drawn);
        const { nodes, annotations } = editor.store.get().document;
        const inside = [...nodes.values()].filter((node) => overlap(drawn, boxOf(editor, node)));
        const enclosed = [...annotations.values()].filter((annotation) =>
            contains(drawn, editor.places.areaOf(annotation)),
        );
        editor.selection.select(
            [...current.added, ...inside.map((node) => node.number)],
            [...current.addedAnnotations, ...enclosed.map((annotation) => annotation.number)],
        );
    };

    const release = () => {
        if (gesture.current && gesture.current.kind !== 'box' && !isEmpty(editor.store.get().moves))
            void editor.places.drop();
        if (gesture.current?.kind === 'box') {
            const count = editor.store.get().selection.size;
            if (count > 0)
                editor.store.say(count === 1 ? '1 node is selected.' : `${count} nodes are selected.`);
        }
        gesture.current = null;
        setBox(null);
    };

    const dragBy = (current: Exclude<Gesture, { kind: 'box' }>, by: Point) => {
        if (current.kind === 'move') editor.places.drag(movedBy(current.places, by));
        else if (current.kind === 'point')
            editor.places.drag(editor.places.pointMoved(current.edge, current.index, by));
        else
            editor.places.drag({
                ...noMoves,
                areas: new Map([[current.annotation.number, resized(current.area, by)]]),
            });
    };

    const judge = (connection: Connection | { source: string; target: string }) => {
        const now = editor.store.get();
        const record = recordOf(now, connection as Connection);
        return record !== undefined && whyNot(now.document, now.catalogue, record) === '';
    };

    const endConnection = (event: MouseEvent | TouchEvent, state: FinalConnectionState) => {
        const { fromHandle, toHandle, isValid } = state;
        if (isValid || !fromHandle?.id || !('clientX' in event)) return;
        const node = editor.store.get().document.nodes.get(Number(fromHandle.nodeId));
        if (!node || (toHandle && toHandle !== fromHandle)) return;
        const side = fromHandle.type === 'source' ? 'output' : 'input';
        const components = componentsAt(editor.store.get().catalogue, node, side, fromHandle.id);
        editor.graph.openAddMenu({
            at: { x: event.clientX, y: event.clientY },
            point: place(event),
            placement: { kind: 'at', port: { node: node.record.id, port: fromHandle.id, side, components } },
        });
    };

    const onFlow = useSteady<ReactFlowProps<CardNode>>({
        onInit: (instance) => {
            flow.current = instance;
            goTo(viewport.current); // the document may have arrived and been framed earlier
        },
        onMove: (_, next) => moved(next),
        onViewportChange: moved,
        onNodeClick: (event, node) => {
            root.current!.focus();
            if (event.shiftKey || !editor.store.get().selection.has(Number(node.id)))
                pick(Number(node.id), event.shiftKey);
            else editor.selection.select([Number(node.id)]);
        },
        onNodeDragStart: (event, node) => {
            pick(Number(node.id), event.shiftKey && !editor.store.get().selection.has(Number(node.id)));
            gesture.current = {
                kind: 'move',
                from: editor.places.placeOf(node.data.node),
                places: editor.places.held(),
            };
        },
        onNodeDrag: (_, node) => {
            if (gesture.current?.kind !== 'move') return;
            const { from } = gesture.current;
            dragBy(gesture.current, { x: node.position.x - from.x, y: node.position.y - from.y });
        },
        onNodeDragStop: release,
        isValidConnection: judge,
        onConnect: (connection) => {
            const record = recordOf(editor.store.get(), connection);
            if (record) editor.graph.connect(record);
        },
        onConnectEnd: endConnection,
    });

    const goToMap = (event: React.PointerEvent) => {
        const corner = event.currentTarget.getBoundingClientRect();
        const at = minimap.current?.toGraph({ x: event.clientX - corner.x, y: event.clientY - corner.y });
        if (!at) return;
        const { zoom } = viewport.current;
        const { clientWidth, clientHeight } = root.current!;
        goTo({ x: clientWidth / 2 - at.x * zoom, y: clientHeight / 2 - at.y * zoom, zoom });
    };

    const editedAnnotation = snapshot.document.annotations.get(edited ?? -1);
    const boxCorner = box && toScreen(viewport.current, box);
    const shownBox = box && {
        left: boxCorner!.x,
        top: boxCorner!.y,
        width: box.width * viewport.current.zoom,
        height: box.height * viewport.current.zoom,
    };
    const count = snapshot.document.nodes.size;
    const first = editor.selection.nodes()[0];
    const [annotation] = editor.selection.annotations();
    const selected = first ? titleOf(first) : annotation && titleOfAnnotation(annotation);

    return (
        <div
            ref={root}
            id="canvas"
            className={isFar ? 'far' : 'near'}
            tabIndex={0}
            role="application"
            aria-label={`Graph of ${count} nodes${selected ? `; ${selected} is selected` : ''}`}
            onPointerDownCapture={pressOnPane}
            onPointerMove={movePointer}
            onPointerUp={release}
            onPointerCancel={release}
            onDoubleClick={(event) => {
                if ((event.target as Element).closest('.react-flow__node') !== null) return;
                const point = place(event);
                const distance = hitDistance / viewport.current.zoom;
                if (pointAt(editor, point, distance)) return;
                const edge = edgeAt(editor, point, distance);
                const held = annotationAt(editor, point, viewport.current.zoom);
                if (edge !== null) {
                    editor.annotations.addPoint(editor.store.get().document.edges.get(edge)!, point);
                } else if (held) {
                    setEdited(held.annotation.number);
                } else {
                    editor.graph.openAddMenu({
                        at: { x: event.clientX, y: event.clientY },
                        point,
                        placement: { kind: 'free' },
                    });
                }
            }}
            onContextMenu={(event) => event.preventDefault()}
        >
            <canvas ref={canvas} aria-hidden="true" />
            <Flow
                nodes={cards}
                nodeTypes={nodeTypes}
                minZoom={leastZoom}
                maxZoom={greatestZoom}
                panOnDrag={panButtons}
                panActivationKeyCode="Space"
                zoomOnScroll={false}
                zoomOnPinch={false}
                zoomOnDoubleClick={false}
                preventScrolling={false}
                elementsSelectable={false}
                nodesFocusable={false}
                disableKeyboardA11y
                deleteKeyCode={null}
                selectionKeyCode={null}
                multiSelectionKeyCode={null}
                nodeDragThreshold={2}
                connectionRadius={18}
                attributionPosition="bottom-center"
                {...onFlow}
            >
                {connectionHint}
            </Flow>
            <canvas
                ref={map}
                className="minimap"
                width={180}
                height={120}
                hidden
                aria-hidden="true"
                title="The whole graph. Click or drag to move the view."
                onPointerDown={(event) => {
                    event.currentTarget.setPointerCapture(event.pointerId);
                    goToMap(event);
                }}
                onPointerMove={(event) => {
                    if (event.buttons !== 0) goToMap(event);
                }}
            />
            {editedAnnotation && (
                <AnnotationText
                    key={edited}
                    annotation={editedAnnotation}
                    viewport={viewport.current}
                    onClose={() => setEdited(null)}
                />
            )}
            {shownBox && <div className="selection-box" style={shownBox} />}
        </div>
    );
}
