import { ReactFlow, type Connection, type ReactFlowInstance, type ReactFlowProps } from '@xyflow/react';
import { memo, useCallback, useEffect, useMemo, useRef, useState } from 'react';
import type { Editor } from '../editor.ts';
import { titleOfAnnotation } from '../model/annotations.ts';
import type { Point } from '../model/document.ts';
import { titleOf } from '../model/shape.ts';
import { around, greatestZoom, leastZoom, wheel, type Box, type Viewport } from '../model/viewport.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { AnnotationText } from './AnnotationText.tsx';
import { CardCache, regionAround } from './cards.ts';
import { Drawing } from './drawing.ts';
import { dragSelection } from './gestures.ts';
import { ConnectionHint, isPossible, looseEnd, recordOf } from './newEdge.tsx';
import { NodeCard, type CardNode } from './NodeCard.tsx';
import { boxOf } from './painter.ts';
import { Pointer } from './pointer.ts';
import { pointOf, View } from './view.ts';

/**
 * The graph. React Flow shows the nodes near the view and handles dragging and new edges; a canvas
 * below it shows all edges, and all nodes if they are too small to read.
 */

/** The canvas as the rest of the page can use it. */
export interface CanvasHandle {
    /** Converts a point on the screen to graph coordinates. */
    toGraph(at: Point): Point;
    /** Whether a point of the graph is in view and not covered by a panel. */
    shows(at: Point): boolean;
    pointer(): Point;
    /** Moves the view to nodes and annotations, or to the whole graph if neither are given. */
    frame(numbers?: Iterable<number>, annotations?: Iterable<number>): void;
}

const nodeTypes = { card: NodeCard };
const panButtons = [1, 2];
/** Re-renders only if a property is a different object, because React Flow then re-renders every node. */
const Flow = memo(ReactFlow<CardNode>);

/** The box around nodes and annotations, or around the whole graph if no nodes are given. */
function boxAround(
    editor: Editor,
    numbers: Iterable<number> | undefined,
    chosenAnnotations: Iterable<number>,
): Box | undefined {
    const { nodes, annotations } = editor.store.get().document;
    const chosen = [...(numbers ?? nodes.keys())].flatMap((n) => nodes.get(n) ?? []);
    const areas = [...(numbers ? chosenAnnotations : annotations.keys())].flatMap(
        (n) => annotations.get(n) ?? [],
    );
    return around([
        ...chosen.map((node) => boxOf(editor, node)),
        ...areas.map((annotation) => editor.places.areaOf(annotation)),
    ]);
}

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
    const flow = useRef<ReactFlowInstance<CardNode> | null>(null);
    const [isFar, setFar] = useState(false);
    const [region, setRegion] = useState<Box | null>(null); // null until the first view is known
    const [box, setBox] = useState<Box | null>(null);
    const [edited, setEdited] = useState<number | null>(null); // the annotation whose text is being edited
    const [cache] = useState(() => new CardCache());
    const [view] = useState(() => new View(root));
    const [drawing] = useState(() => new Drawing(editor, view, canvas, map));
    const [pointer] = useState(() => new Pointer(editor, view, setBox, setEdited));
    const [connectionHint] = useState(() => <ConnectionHint pointer={pointer} />);
    view.covered = covered;

    const moved = useCallback(
        (next: Viewport) => {
            view.viewport = next;
            root.current!.querySelector<HTMLElement>('.annotation-text')?.blur(); // it does not move with the view
            if (editor.store.get().file === '') return; // the first view is set when the document arrives
            const size = view.size();
            setFar(view.isFar());
            if (!view.isFar()) setRegion((old) => regionAround(next, size, old));
            drawing.drawSoon();
        },
        [drawing, editor, view],
    );

    const goTo = useCallback((next: Viewport) => void flow.current?.setViewport(next), []);

    useEffect(() => {
        const element = root.current!;
        const turn = (event: WheelEvent) => {
            event.preventDefault();
            event.stopPropagation();
            goTo(wheel(view.viewport, event, view.toElement(pointOf(event))));
        };
        const resized = new ResizeObserver(drawing.drawSoon);
        const scheme = window.matchMedia('(prefers-color-scheme: dark)');
        element.addEventListener('wheel', turn, { passive: false, capture: true });
        resized.observe(element);
        scheme.addEventListener('change', drawing.recolour);
        onReady({
            toGraph: (point) => view.toGraph(point),
            shows: (point) => view.shows(point),
            pointer: () => pointer.at,
            frame: (numbers, annotations = []) => {
                const wanted = boxAround(editor, numbers, annotations);
                const next = wanted ? view.framing(wanted) : view.viewport;
                goTo(next);
                moved(next);
            },
        });
        return () => {
            element.removeEventListener('wheel', turn, { capture: true });
            resized.disconnect();
            scheme.removeEventListener('change', drawing.recolour);
        };
    }, [drawing, editor, goTo, moved, onReady, pointer, view]);

    useEffect(drawing.drawSoon, [drawing, snapshot, isFar]);

    const cards = useMemo(
        () => (isFar || !region ? [] : cache.cardsOf(editor, snapshot, region, lit)),
        [cache, editor, isFar, lit, region, snapshot],
    );

    useEffect(() => editor.thumbnails.want(cards.map((card) => card.data.node.record.id)), [cards, editor]);

    const [onFlow] = useState<ReactFlowProps<CardNode>>(() => ({
        onInit: (instance) => {
            flow.current = instance;
            goTo(view.viewport); // the document may have arrived and been framed earlier
        },
        onMove: (_, next) => moved(next),
        onViewportChange: moved,
        onNodeClick: (event, node) => {
            root.current!.focus();
            const number = Number(node.id);
            if (event.shiftKey || !editor.store.get().selection.has(number))
                editor.selection.pick(number, event.shiftKey);
            else editor.selection.select([number]);
        },
        onNodeDragStart: (event, node) => {
            const number = Number(node.id);
            const isAdding = event.shiftKey && !editor.store.get().selection.has(number);
            editor.selection.pick(number, isAdding);
            pointer.gesture = dragSelection(editor, editor.places.placeOf(node.data.node));
        },
        onNodeDrag: (_, node) => pointer.gesture?.moveTo(node.position),
        onNodeDragStop: pointer.release,
        isValidConnection: (connection) => isPossible(editor.store.get(), connection as Connection),
        onConnect: (connection) => {
            const record = recordOf(editor.store.get(), connection);
            if (record) editor.graph.connect(record);
        },
        onConnectEnd: (event, state) => {
            const port = looseEnd(editor.store.get(), state);
            if (!port || !('clientX' in event)) return;
            const at = pointOf(event);
            editor.graph.openAddMenu({ at, point: view.toGraph(at), placement: { kind: 'at', port } });
        },
    }));

    const goToMap = (event: React.PointerEvent) => {
        const corner = event.currentTarget.getBoundingClientRect();
        const at = drawing.minimap?.toGraph({ x: event.clientX - corner.x, y: event.clientY - corner.y });
        if (at) goTo(view.centredOn(at));
    };

    const editedAnnotation = snapshot.document.annotations.get(edited ?? -1);
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
            onPointerDownCapture={pointer.press}
            onPointerMove={pointer.move}
            onPointerUp={pointer.release}
            onPointerCancel={pointer.release}
            onDoubleClick={pointer.doubleClick}
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
                    viewport={view.viewport}
                    onClose={() => setEdited(null)}
                />
            )}
            {box && <div className="selection-box" style={view.styleOf(box)} />}
        </div>
    );
}
