import { useCallback, useEffect, useRef, useState } from 'react';
import { Canvas, type CanvasHandle } from './canvas/Canvas.tsx';
import { titleOfAnnotation } from './model/annotations.ts';
import { titleOf } from './model/shape.ts';
import { alongEdge, isDirection, neighbour, type Direction } from './model/walk.ts';
import type { Editor } from './editor.ts';
import { positionOf } from './model/document.ts';
import { AddMenu } from './panels/AddMenu.tsx';
import { ConnectMenu } from './panels/ConnectMenu.tsx';
import { Drawer } from './panels/Drawer.tsx';
import { Grip } from './panels/Grip.tsx';
import { Inspector } from './panels/Inspector.tsx';
import { KeyList } from './panels/KeyList.tsx';
import { Notices } from './panels/Notices.tsx';
import { Palette } from './panels/Palette.tsx';
import { PinnedPicture } from './panels/PinnedPicture.tsx';
import { Surface } from './panels/Surface.tsx';
import { saveCopy, TopBar } from './panels/TopBar.tsx';
import { useEditor, useSnapshot } from './useEditor.ts';

type Dialog = 'find' | 'connect' | 'keys' | null;

function isTyping(target: EventTarget | null): boolean {
    return target instanceof Element && target.closest('input, textarea, select, .cm-editor') !== null;
}

const firstField = ['input', 'select', 'textarea']
    .map((field) => `#inspector .row:not(.id) ${field}:enabled`)
    .join();

/** Focuses the text field of the frame or note that was just added. */
function editText(): void {
    requestAnimationFrame(() => document.querySelector<HTMLElement>(firstField)?.focus());
}

/** Commits the text that is being typed into a field. */
function finishField(): void {
    const field = document.activeElement;
    if (!(field instanceof HTMLElement) || !isTyping(field)) return;
    field.blur();
    field.focus();
}

function openAddMenu(editor: Editor, canvas: CanvasHandle): void {
    const placement = editor.graph.placement();
    const at = canvas.pointer();
    editor.graph.openAddMenu({ at, point: canvas.toGraph(at), placement });
}

/** Goes from the last selected node to another node: along an edge with Alt; Shift extends the selection. */
function walk(
    editor: Editor,
    direction: Direction,
    { altKey, shiftKey }: KeyboardEvent,
    canvas: CanvasHandle,
): void {
    const { document } = editor.store.get();
    const from = editor.selection.nodes().at(-1);
    const go = altKey ? alongEdge : neighbour;
    const next = from ? go(document, from, direction) : [...document.nodes.values()][0];
    if (!next) {
        editor.store.say('There is no node in this direction.');
        return;
    }
    editor.selection.selectIds([next.record.id], [], shiftKey);
    const inputs = next.inputs?.length ?? 0;
    const outputs = next.outputs?.length ?? 0;
    const count = editor.store.get().selection.size;
    const counted = count > 1 ? `; ${count} nodes are selected` : '';
    editor.store.say(`${titleOf(next)}, ${next.record.id}: ${inputs} inputs, ${outputs} outputs${counted}`);
    if (!canvas.shows(positionOf(next))) canvas.frame([next.number]);
}

export function App() {
    const editor = useEditor();
    const file = useSnapshot((all) => all.file);
    const unsaved = useSnapshot((all) => all.unsaved);
    const selection = useSnapshot((all) => all.selection);
    const graph = useSnapshot((all) => all.document);
    const layouts = useSnapshot((all) => all.layouts);
    const canvas = useRef<CanvasHandle | null>(null);
    const spaceIsTap = useRef(false);
    const [dialog, setDialog] = useState<Dialog>(null);
    const [lit, setLit] = useState<ReadonlySet<string>>(new Set());
    const [isGraphShown, setGraphShown] = useState(false);
    const [panelWidth, setPanelWidth] = useState(300);

    const light = useCallback(
        (ids: readonly string[]) =>
            setLit((old) => (old.size === 0 && ids.length === 0 ? old : new Set(ids))),
        [],
    );

    useEffect(() => {
        document.title = `${unsaved ? '● ' : ''}${file || 'Mox'}`;
    }, [file, unsaved]);

    // The first view shows the whole graph.
    const isLoaded = graph.nodes.size > 0 || file !== '';
    useEffect(() => {
        if (!isLoaded) return;
        canvas.current?.frame();
        const afterThatFrame = () => {
            performance.mark('graph-shown'); // for benchmarks
            setGraphShown(true);
            editor.compileTimer.start();
        };
        requestAnimationFrame(() => requestAnimationFrame(afterThatFrame));
    }, [editor, isLoaded]);

    useEffect(() => {
        if (layouts > 0) canvas.current?.frame();
    }, [layouts]);

    const jumpTo = useCallback(
        (ids: readonly string[], annotations: readonly string[], isAdding = false) => {
            editor.selection.selectIds(ids, annotations, isAdding);
            const { selection, selectedAnnotations } = editor.store.get();
            canvas.current?.frame(selection, selectedAnnotations);
            document.getElementById('canvas')?.focus();
        },
        [editor],
    );
    const jump = useCallback((id: string) => jumpTo([id], []), [jumpTo]);

    useEffect(() => {
        const pointOnCanvas = () => canvas.current!.toGraph(canvas.current!.pointer());
        const commands: Record<string, () => void> = {
            'ctrl+z': () => editor.changes.undo(),
            'ctrl+shift+z': () => editor.changes.redo(),
            'ctrl+y': () => editor.changes.redo(),
            'ctrl+s': () => {
                finishField();
                void editor.file.save();
            },
            'ctrl+shift+s': () => {
                finishField();
                void saveCopy(editor);
            },
            'ctrl+d': () => void editor.clipboard.duplicate(),
            'ctrl+f': () => setDialog('find'),
            'ctrl+a': () => {
                const { nodes, annotations } = editor.store.get().document;
                editor.selection.select(nodes.keys(), annotations.keys());
            },
        };
        const plain: Record<string, () => void> = {
            tab: () => openAddMenu(editor, canvas.current!),
            c: () => setDialog(editor.selection.nodes().length === 1 ? 'connect' : null),
            delete: () => editor.graph.deleteSelected(false),
            backspace: () => editor.graph.deleteSelected(false),
            'ctrl+delete': () => editor.graph.deleteSelected(true),
            'ctrl+backspace': () => editor.graph.deleteSelected(true),
            g: () => void editor.annotations.addFrame(pointOnCanvas()).then(editText),
            n: () => void editor.annotations.addNote(pointOnCanvas()).then(editText),
            e: () => editor.selection.selectNextEdge(),
            b: () => {
                const { document: graph, selectedEdge } = editor.store.get();
                const edge = graph.edges.get(selectedEdge ?? -1);
                if (edge) editor.annotations.addPoint(edge);
            },
            f: () => {
                const { selection, selectedAnnotations } = editor.store.get();
                const isAll = selection.size + selectedAnnotations.size === 0;
                canvas.current!.frame(isAll ? undefined : selection, selectedAnnotations);
            },
            a: () => canvas.current!.frame(),
            l: () => editor.places.layOut(),
            p: () => pinNext(editor),
            t: () => editor.thumbnails.toggle(),
            'shift+t': () => editor.thumbnails.toggleOf(editor.selection.nodes()),
            d: () => editor.comparer.toggle(),
            enter: () => document.querySelector<HTMLElement>(firstField)?.focus(),
            escape: () => editor.selection.select([]),
            '?': () => setDialog('keys'),
            'shift+?': () => setDialog('keys'),
        };
        const press = (event: KeyboardEvent) => {
            const control = event.ctrlKey || event.metaKey ? 'ctrl+' : '';
            const name = `${control}${event.shiftKey ? 'shift+' : ''}${event.key.toLowerCase()}`;
            const everywhere = commands[name];
            const isText = isTyping(event.target);
            if (everywhere && !(isText && ['ctrl+z', 'ctrl+shift+z', 'ctrl+y', 'ctrl+a'].includes(name))) {
                event.preventDefault();
                everywhere();
                return;
            }
            const isOnCanvas = event.target === document.body || (event.target as Element).id === 'canvas';
            if (isText || !isOnCanvas) {
                if (event.key === 'Escape') document.getElementById('canvas')?.focus();
                return;
            }
            if (event.key === ' ') {
                spaceIsTap.current = !event.repeat || spaceIsTap.current;
                event.preventDefault();
            } else if (isDirection(event.key)) {
                event.preventDefault();
                const step = event.shiftKey ? 40 : 8;
                const moves: Record<Direction, [number, number]> = {
                    ArrowLeft: [-step, 0],
                    ArrowRight: [step, 0],
                    ArrowUp: [0, -step],
                    ArrowDown: [0, step],
                };
                const [x, y] = moves[event.key];
                if (control) editor.places.nudge({ x, y });
                else walk(editor, event.key, event, canvas.current!);
            } else if (plain[name]) {
                event.preventDefault();
                plain[name]();
            }
        };
        const release = (event: KeyboardEvent) => {
            if (event.key !== ' ' || isTyping(event.target) || !spaceIsTap.current) return;
            spaceIsTap.current = false;
            openAddMenu(editor, canvas.current!);
        };
        const panned = () => {
            spaceIsTap.current = false;
        };
        const copy = (event: ClipboardEvent, isCut: boolean) => {
            const { selection, selectedAnnotations } = editor.store.get();
            if (isTyping(event.target) || selection.size + selectedAnnotations.size === 0) return;
            event.preventDefault();
            void editor.clipboard.copy().then(async (text) => {
                if (text === '') return;
                await navigator.clipboard.writeText(text);
                if (isCut) editor.clipboard.cut();
                else editor.store.say('Copied.');
            });
        };
        const cut = (event: ClipboardEvent) => copy(event, true);
        const justCopy = (event: ClipboardEvent) => copy(event, false);
        const paste = (event: ClipboardEvent) => {
            if (isTyping(event.target)) return;
            event.preventDefault();
            const point = canvas.current!.toGraph(canvas.current!.pointer());
            void editor.clipboard.paste(event.clipboardData?.getData('text/plain') ?? '', point);
        };
        window.addEventListener('keydown', press);
        window.addEventListener('keyup', release);
        window.addEventListener('pointerdown', panned, true);
        document.addEventListener('copy', justCopy);
        document.addEventListener('cut', cut);
        document.addEventListener('paste', paste);
        return () => {
            window.removeEventListener('keydown', press);
            window.removeEventListener('keyup', release);
            window.removeEventListener('pointerdown', panned, true);
            document.removeEventListener('copy', justCopy);
            document.removeEventListener('cut', cut);
            document.removeEventListener('paste', paste);
        };
    }, [editor]);

    const ready = useCallback((handle: CanvasHandle) => {
        canvas.current = handle;
    }, []);
    const closeDialog = () => {
        setDialog(null);
        light([]);
        document.getElementById('canvas')?.focus();
    };
    const first = selection.size === 1 ? graph.nodes.get([...selection][0]!) : undefined;

    return (
        <>
            <TopBar
                onFind={() => setDialog('find')}
                onAdd={() => openAddMenu(editor, canvas.current!)}
                onFrame={() => canvas.current!.frame()}
                onKeys={() => setDialog('keys')}
            />
            <main
                onDragOver={(event) => event.preventDefault()}
                onDrop={(event) => {
                    event.preventDefault();
                    const point = canvas.current!.toGraph({ x: event.clientX, y: event.clientY });
                    [...event.dataTransfer.files].forEach((dropped, i) => {
                        const place = { x: point.x, y: point.y + 120 * i };
                        void dropped
                            .arrayBuffer()
                            .then((bytes) =>
                                editor.graph.addTexture(dropped.name, new Uint8Array(bytes), place),
                            );
                    });
                }}
            >
                <Canvas lit={lit} covered={panelWidth + 30} onReady={ready} />
                <aside style={{ width: panelWidth }}>
                    <Grip width={panelWidth} onChange={setPanelWidth} />
                    <Surface isGraphShown={isGraphShown} side={panelWidth - 44} />
                    <PinnedPicture />
                    <Inspector light={light} />
                </aside>
                <Notices />
            </main>
            <Drawer light={light} jump={jump} />
            <AddMenu />
            {dialog === 'connect' && first && (
                <ConnectMenu node={first} onClose={closeDialog} light={light} />
            )}
            {dialog === 'keys' && <KeyList onClose={closeDialog} />}
            {dialog === 'find' && (
                <Palette
                    title="Find a node, a frame or a note"
                    choices={[
                        ...[...graph.nodes.values()].map((node) => ({
                            key: `node-${node.number}`,
                            label: titleOf(node),
                            detail: `${node.record.id} ${node.record.type}`,
                            ids: [[node.record.id], []] as [string[], string[]],
                        })),
                        ...[...graph.annotations.values()].map((annotation) => ({
                            key: `annotation-${annotation.number}`,
                            label: titleOfAnnotation(annotation),
                            detail: annotation.record.text.split('\n').slice(1).join(' '),
                            ids: [[], [annotation.record.id]] as [string[], string[]],
                        })),
                    ]}
                    onClose={closeDialog}
                    onPick={(choice, isAdding) => {
                        closeDialog();
                        jumpTo(...choice.ids, isAdding);
                        editor.store.say(`Selected: ${choice.label}`);
                    }}
                />
            )}
        </>
    );
}

/** Pins the image of the first output or, if one is pinned, of the next output; after the last one, pins none. */
function pinNext(editor: Editor): void {
    const node = editor.selection.nodes()[0];
    if (!node) return;
    const { pinned } = editor.store.get();
    const ports = node.outputs ?? [];
    const last = pinned?.node === node.record.id ? ports.findIndex(({ name }) => name === pinned.port) : -1;
    const next = ports[last + 1];
    editor.pinned.pin(next ? { node: node.record.id, port: next.name } : null);
}
