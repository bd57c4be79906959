import { useRef, useState } from 'react';
import { evaluate, formatNumber, fromHex, parseNumbers, toHex } from '../model/numbers.ts';
import { useEditor } from '../useEditor.ts';

/** Fields for values. All values of a drag have the same gesture, so that the drag is a single undo step. */

export type OnChange = (value: string, gesture?: string) => void;

let gestureCount = 0;

export function newGesture(): string {
    return `drag ${++gestureCount}`;
}

/**
 * A number. It can be typed, also as a calculation such as 1/3, dragged sideways, or changed with the arrow keys.
 * Only a typed number can be outside the range.
 */
export function NumberField({
    value,
    label,
    disabled = false,
    isWhole = false,
    range,
    mixed = false,
    onChange,
}: {
    value: number;
    label: string;
    disabled?: boolean;
    isWhole?: boolean;
    range?: readonly [number, number] | undefined;
    mixed?: boolean;
    onChange: OnChange;
}) {
    const editor = useEditor();
    const [text, setText] = useState<string | null>(null);
    const drag = useRef<{ x: number; start: number; gesture: string; hasMoved: boolean } | null>(null);
    const span = range ? range[1] - range[0] : 0;
    const step = isWhole ? 1 : span > 0 ? span / 200 : 0.01;
    const send = (next: number, gesture?: string) =>
        onChange(formatNumber(isWhole ? Math.round(next) : next), gesture);
    const sendInRange = (next: number, gesture: string) =>
        send(range ? Math.min(range[1], Math.max(range[0], next)) : next, gesture);
    const finish = () => {
        if (text !== null) {
            const next = evaluate(text);
            if (next === undefined)
                editor.store.say(`"${text}" is neither a number such as 0.5 nor a calculation such as 1/3.`);
            else if (mixed || next !== value) send(next);
        }
        setText(null);
    };
    return (
        <input
            className="number"
            inputMode="decimal"
            aria-label={label}
            disabled={disabled}
            value={text ?? (mixed ? '' : formatNumber(value))}
            placeholder={mixed ? 'mixed' : ''}
            aria-invalid={text !== null && evaluate(text) === undefined}
            onChange={(event) => setText(event.target.value)}
            onBlur={finish}
            onKeyDown={(event) => {
                if (event.key === 'Enter') finish();
                if (event.key === 'Escape') setText(null);
                const direction = event.key === 'ArrowUp' ? 1 : event.key === 'ArrowDown' ? -1 : 0;
                if (direction !== 0) {
                    event.preventDefault();
                    setText(null);
                    const factor = event.shiftKey ? 10 : 1;
                    const rounded = Math.round((value + direction * factor * step) / step) * step;
                    sendInRange(rounded, `arrows ${label}`);
                }
            }}
            onPointerDown={(event) => {
                if (event.button !== 0 || disabled || document.activeElement === event.currentTarget) return;
                drag.current = { x: event.clientX, start: value, gesture: newGesture(), hasMoved: false };
                event.currentTarget.setPointerCapture(event.pointerId);
            }}
            onPointerMove={(event) => {
                const current = drag.current;
                if (!current) return;
                const way = event.clientX - current.x;
                if (!current.hasMoved && Math.abs(way) < 3) return;
                current.hasMoved = true;
                event.currentTarget.blur();
                sendInRange(
                    current.start + Math.round(way) * step * (event.shiftKey ? 10 : 1),
                    current.gesture,
                );
            }}
            onPointerUp={(event) => {
                if (drag.current && !drag.current.hasMoved) event.currentTarget.select();
                drag.current = null;
            }}
        />
    );
}

/** A colour in linear light, with the browser's colour picker and a number field for each component. */
export function ColourField({
    value,
    label,
    count = 4,
    separator = ' ',
    disabled = false,
    mixed = false,
    onChange,
}: {
    value: string;
    label: string;
    count?: number;
    separator?: string;
    disabled?: boolean;
    mixed?: boolean;
    onChange: OnChange;
}) {
    const numbers = parseNumbers(value);
    const gesture = useRef('');
    const replace = (parts: readonly number[], name?: string) => {
        const next = numbers.map((old, i) => parts[i] ?? old);
        onChange(next.map(formatNumber).join(separator), name);
    };
    return (
        <span className="colour">
            {count >= 3 && (
                <input
                    type="color"
                    aria-label={`${label}, colour`}
                    title={mixed ? 'mixed' : toHex(numbers)}
                    disabled={disabled}
                    value={toHex(numbers)}
                    onFocus={() => {
                        gesture.current = newGesture();
                    }}
                    onChange={(event) => replace(fromHex(event.target.value), gesture.current)}
                />
            )}
            {['red', 'green', 'blue', 'alpha'].slice(0, count).map((name, i) => (
                <NumberField
                    key={name}
                    label={`${label}, ${name}`}
                    value={numbers[i] ?? 0}
                    mixed={mixed}
                    disabled={disabled}
                    onChange={(text, dragName) => {
                        const parts = [...numbers];
                        parts[i] = Number(text);
                        replace(parts, dragName);
                    }}
                />
            ))}
        </span>
    );
}

/** A text field. Losing the focus or pressing Enter (Ctrl + Enter if it is long) commits the text. */
export function TextField({
    value,
    label,
    disabled = false,
    isLong = false,
    mixed = false,
    onChange,
}: {
    value: string;
    label: string;
    disabled?: boolean;
    isLong?: boolean;
    mixed?: boolean;
    onChange: OnChange;
}) {
    const [text, setText] = useState<string | null>(null);
    const finish = () => {
        if (text !== null && text !== value) onChange(text);
        setText(null);
    };
    const wasFocused = useRef(false);
    const common = {
        'aria-label': label,
        disabled,
        value: text ?? (mixed ? '' : value),
        placeholder: mixed ? 'mixed' : '',
        onBlur: finish,
    };
    const press = (event: React.KeyboardEvent) => {
        if (event.key === 'Enter' && (!isLong || event.ctrlKey)) finish();
        if (event.key === 'Escape') setText(null);
    };
    return isLong ? (
        <textarea {...common} rows={2} onChange={(event) => setText(event.target.value)} onKeyDown={press} />
    ) : (
        <input
            {...common}
            onChange={(event) => setText(event.target.value)}
            onKeyDown={press}
            onPointerDown={(event) => {
                wasFocused.current = document.activeElement === event.currentTarget;
            }}
            onPointerUp={(event) => {
                if (!wasFocused.current) event.currentTarget.select(); // so that typing replaces the text
            }}
        />
    );
}
