import { useEffect, useId, useRef, useState, type ReactNode } from 'react';
import type { Point } from '../model/document.ts';
import { fuzzyScore, rank } from '../model/fuzzy.ts';

export interface Choice {
    key: string;
    label: string;
    /** Shown after the label; the search includes it. */
    detail?: string;
    help?: string;
    /** Shown only during a search. */
    isMinor?: boolean;
}

const mostShown = 60;

/** A searchable list of choices, at a point of the window. */
export function Palette<T extends Choice>({
    title,
    choices,
    at,
    onPick,
    onClose,
    onPointTo,
    children,
}: {
    title: string;
    choices: readonly T[];
    at?: Point;
    /** @param isAdding whether Shift was held down */
    onPick: (choice: T, isAdding: boolean) => void;
    onClose: () => void;
    onPointTo?: (choice: T | undefined) => void;
    children?: ReactNode;
}) {
    const [query, setQuery] = useState('');
    const [current, setCurrent] = useState(0);
    const list = useRef<HTMLUListElement>(null);
    const dialog = useRef<HTMLDivElement>(null);
    const id = useId();
    const isSearch = query.trim() !== '';
    const found = rank(choices, (choice) =>
        !isSearch && choice.isMinor
            ? 0
            : Math.max(2 * fuzzyScore(query, choice.label), fuzzyScore(query, choice.detail ?? '')),
    ).slice(0, mostShown);
    const chosen = found[Math.min(current, found.length - 1)];

    useEffect(() => {
        list.current?.querySelector('[aria-selected=true]')?.scrollIntoView({ block: 'nearest' });
        onPointTo?.(chosen);
    }, [chosen, onPointTo]);

    useEffect(() => {
        const away = (event: PointerEvent) => {
            if (!dialog.current?.contains(event.target as Element)) onClose();
        };
        window.addEventListener('pointerdown', away, true);
        return () => window.removeEventListener('pointerdown', away, true);
    }, [onClose]);

    const press = (event: React.KeyboardEvent) => {
        event.stopPropagation();
        const moves: Record<string, number> = { ArrowDown: 1, ArrowUp: -1, PageDown: 8, PageUp: -8 };
        const move = moves[event.key];
        if (move !== undefined) {
            setCurrent(Math.min(found.length - 1, Math.max(0, current + move)));
        } else if (event.key === 'Enter') {
            if (chosen) onPick(chosen, event.shiftKey);
        } else if (event.key === 'Escape' || event.key === 'Tab') {
            onClose();
        } else {
            return;
        }
        event.preventDefault();
    };

    const place = at && {
        left: Math.max(8, Math.min(at.x, window.innerWidth - 328)),
        top: Math.max(8, Math.min(at.y, window.innerHeight - 388)),
    };
    return (
        <div
            ref={dialog}
            className={`palette ${at ? '' : 'centred'}`}
            role="dialog"
            aria-label={title}
            style={place}
            onKeyDown={press}
        >
            <input
                autoFocus
                role="combobox"
                aria-expanded="true"
                aria-controls={id}
                aria-activedescendant={chosen ? `${id}-${chosen.key}` : undefined}
                aria-label={title}
                placeholder={title}
                value={query}
                onChange={(event) => {
                    setQuery(event.target.value);
                    setCurrent(0);
                }}
            />
            {children}
            <ul ref={list} id={id} role="listbox" aria-label={title}>
                {found.map((choice) => (
                    <li
                        key={choice.key}
                        id={`${id}-${choice.key}`}
                        role="option"
                        aria-selected={choice === chosen}
                        title={choice.help}
                        onPointerMove={() => setCurrent(found.indexOf(choice))}
                        onClick={(event) => onPick(choice, event.shiftKey)}
                    >
                        <span>{choice.label}</span>
                        {choice.detail && <small>{choice.detail}</small>}
                    </li>
                ))}
                {found.length === 0 && <li className="nothing">There are no matches.</li>}
            </ul>
            {chosen?.help && <p className="palette-help">{chosen.help}</p>}
        </div>
    );
}
