import { useRef } from 'react';
import { colourOf, withContents } from '../model/annotations.ts';
import type { AnnotationRecord, AnnotationState } from '../model/messages.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { newGesture, NumberField, TextField } from './fields.tsx';

/** The text, colour, position and size of a frame or a note. */
export function AnnotationPanel({ annotation }: { annotation: AnnotationState }) {
    const editor = useEditor();
    const document = useSnapshot((all) => all.document);
    const { record, number } = annotation;
    const isFrame = record.kind === 'frame';
    const set = (changes: Partial<AnnotationRecord>, gesture?: string) =>
        editor.annotations.set({ ...record, ...changes }, gesture);
    const contents = withContents(document, [], [number]);
    const count = contents.nodes.size;
    const textName = isFrame ? 'title' : 'text';
    return (
        <section className="panel" id="inspector" aria-label="Inspector">
            <h2>{isFrame ? 'Frame' : 'Note'}</h2>
            <div className="row">
                <label>{textName}</label>
                <TextField
                    label={textName}
                    value={record.text}
                    isLong={!isFrame}
                    onChange={(text) => set({ text })}
                />
            </div>
            <div className="row">
                <label>colour</label>
                <ColourPicker
                    key={number}
                    value={colourOf(annotation)}
                    onChange={(colour, gesture) => set({ colour }, gesture)}
                />
                <button
                    className="reset"
                    hidden={record.colour === undefined}
                    title="Reset to the default"
                    aria-label="colour: reset to the default"
                    onClick={() => {
                        const { colour: _, ...others } = record;
                        editor.annotations.set(others);
                    }}
                >
                    ↺
                </button>
            </div>
            {(['x', 'y', 'width', 'height'] as const).map((name) => (
                <div key={`${number} ${name}`} className="row">
                    <label>{name}</label>
                    <NumberField
                        label={name}
                        value={record[name]}
                        isWhole
                        onChange={(value, gesture) => set({ [name]: Number(value) }, gesture)}
                    />
                </div>
            ))}
            {isFrame && (
                <button onClick={() => editor.selection.select(contents.nodes, contents.annotations)}>
                    Select its contents ({count === 1 ? '1 node' : `${count} nodes`})
                </button>
            )}
        </section>
    );
}

function ColourPicker({
    value,
    onChange,
}: {
    value: string;
    onChange: (colour: string, gesture: string) => void;
}) {
    const gesture = useRef('');
    return (
        <input
            type="color"
            aria-label="colour"
            value={value}
            onFocus={() => {
                gesture.current = newGesture();
            }}
            onChange={(event) => onChange(event.target.value, gesture.current)}
        />
    );
}
