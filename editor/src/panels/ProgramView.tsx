import { StreamLanguage, syntaxHighlighting } from '@codemirror/language';
import { shader } from '@codemirror/legacy-modes/mode/clike';
import { EditorState, StateEffect, StateField } from '@codemirror/state';
import { Decoration, EditorView, lineNumbers, type DecorationSet } from '@codemirror/view';
import { classHighlighter } from '@lezer/highlight';
import { useEffect, useMemo, useRef, useState } from 'react';
import type { Answer } from '../model/messages.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import type { Lighting } from './Inspector.tsx';

const setLines = StateEffect.define<readonly number[]>();
const marked = Decoration.line({ class: 'marked' });

const marks = StateField.define<DecorationSet>({
    create: () => Decoration.none,
    update(decorations, transaction) {
        for (const effect of transaction.effects)
            if (effect.is(setLines))
                return Decoration.set(
                    effect.value
                        .filter((line) => line <= transaction.state.doc.lines)
                        .map((line) => marked.range(transaction.state.doc.line(line).from)),
                );
        return decorations;
    },
    provide: (field) => EditorView.decorations.from(field),
});

/** The numbers of the lines that come from the given nodes, starting at 1. */
export function linesOf(lineNodes: readonly string[], ids: ReadonlySet<string>): number[] {
    return lineNodes.flatMap((id, i) => (ids.has(id) ? [i + 1] : []));
}

function CodeView({
    text,
    lines,
    onLine,
}: {
    text: string;
    lines: readonly number[];
    onLine: (line: number) => void;
}) {
    const parent = useRef<HTMLDivElement>(null);
    const view = useRef<EditorView | null>(null);
    const listener = useRef(onLine);
    listener.current = onLine;
    useEffect(() => {
        const nonce = document.querySelector<HTMLMetaElement>('meta[name=nonce]')?.content ?? '';
        view.current = new EditorView({
            parent: parent.current!,
            state: EditorState.create({
                doc: text,
                extensions: [
                    EditorView.cspNonce.of(nonce),
                    EditorState.readOnly.of(true),
                    EditorView.contentAttributes.of({ 'aria-label': 'Program' }),
                    lineNumbers(),
                    marks,
                    StreamLanguage.define(shader),
                    syntaxHighlighting(classHighlighter),
                    EditorView.updateListener.of((update) => {
                        const { state } = update;
                        if (update.selectionSet)
                            listener.current(state.doc.lineAt(state.selection.main.head).number);
                    }),
                ],
            }),
        });
        view.current.scrollDOM.tabIndex = 0; // makes it scrollable by keyboard
        return () => view.current?.destroy();
    }, [text]);
    useEffect(() => {
        const editor = view.current;
        if (!editor) return;
        const first = lines[0];
        const scroll =
            first !== undefined && first <= editor.state.doc.lines
                ? [
                      EditorView.scrollIntoView(editor.state.doc.line(first).from, {
                          y: 'nearest',
                          yMargin: 80,
                      }),
                  ]
                : [];
        editor.dispatch({ effects: [setLines.of(lines), ...scroll] });
    }, [lines, text]);
    return <div className="code" ref={parent} />;
}

/** The programs in any language. Marks the lines of the selected nodes, and the node of the current line. */
export function ProgramView({ light }: Lighting) {
    const editor = useEditor();
    const revision = useSnapshot((all) => all.revision);
    const selection = useSnapshot((all) => all.selection);
    const nodes = useSnapshot((all) => all.document.nodes);
    const targets = useSnapshot((all) => all.targets);
    const [target, setTarget] = useState('cg');
    const [stage, setStage] = useState<'vertex' | 'fragment'>('fragment');
    const [answer, setAnswer] = useState<Answer | null>(null);

    useEffect(() => {
        let isCurrent = true;
        const timer = setTimeout(() => {
            void editor.compiler.programsIn(target).then((next) => {
                if (isCurrent && !next.outOfDate) setAnswer(next);
            });
        }, 100);
        return () => {
            isCurrent = false;
            clearTimeout(timer);
        };
    }, [editor, revision, target]);

    useEffect(() => () => light([]), [light]);

    const files = answer?.programs?.[target];
    const ending = Object.keys(files ?? {}).find((name) => name.startsWith(`.${stage}.`)) ?? '';
    const text = files?.[ending] ?? '';
    const lineNodes = answer?.lineNodes?.[target]?.[ending];
    const lines = useMemo(() => {
        const ids = new Set([...selection].map((number) => nodes.get(number)?.record.id ?? ''));
        ids.delete('');
        return linesOf(lineNodes ?? [], ids);
    }, [lineNodes, nodes, selection]);

    return (
        <div className="programs">
            <div className="bar">
                <select
                    aria-label="Language"
                    value={target}
                    onChange={(event) => setTarget(event.target.value)}
                >
                    {targets.map((name) => (
                        <option key={name}>{name}</option>
                    ))}
                </select>
                {(['vertex', 'fragment'] as const).map((name) => (
                    <button key={name} aria-pressed={stage === name} onClick={() => setStage(name)}>
                        {name}
                    </button>
                ))}
                <button disabled={text === ''} onClick={() => void navigator.clipboard.writeText(text)}>
                    Copy
                </button>
                {answer?.error && <span className="problem error">{answer.error.message}</span>}
                {answer && !files && !answer.error && (
                    <span className="problem error">Programs are available once the errors are fixed.</span>
                )}
            </div>
            <CodeView
                text={text}
                lines={lines}
                onLine={(line) => {
                    const id = lineNodes?.[line - 1];
                    light(id ? [id] : []);
                }}
            />
        </div>
    );
}
