import { useMemo } from 'react';
import { typesFor } from '../model/edits.ts';
import type { Placement, TypeChoice } from '../model/edits.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { Palette, type Choice } from './Palette.tsx';

const recentKey = 'mox-recent';
const mostRecent = 5;

const frameKey = '.frame'; // no type starts with a dot
const noteKey = '.note';
interface AddChoice extends Choice {
    /** Missing for frames and notes. */
    choice?: TypeChoice;
}

const annotationChoices: AddChoice[] = [
    { key: frameKey, label: 'Frame', detail: 'G', help: 'Adds a titled frame around the selection.' },
    { key: noteKey, label: 'Note', detail: 'N', help: 'Adds a note for people who read the graph.' },
];

function recentTypes(): string[] {
    return (localStorage.getItem(recentKey) ?? '').split('\n').filter((name) => name !== '');
}

function remember(type: string): void {
    const types = [type, ...recentTypes().filter((other) => other !== type)];
    localStorage.setItem(recentKey, types.slice(0, mostRecent).join('\n'));
}

function titleFor(placement: Placement): string {
    switch (placement.kind) {
        case 'behind':
            return `Add a node after “${placement.node}”`;
        case 'into':
            return 'Insert a node into the edge';
        case 'at':
            return placement.port.side === 'output'
                ? 'Add a node that accepts this output'
                : 'Add a node that provides this input';
        case 'free':
            return 'Add a node';
    }
}

/** A searchable list of node types, with the most recently used first. */
export function AddMenu() {
    const editor = useEditor();
    const menu = useSnapshot((all) => all.addMenu);
    const catalogue = useSnapshot((all) => all.catalogue);
    const choices = useMemo(() => {
        if (!menu) return [];
        const recent = recentTypes();
        const order = (type: string) => (recent.indexOf(type) + mostRecent + 1) % (mostRecent + 1);
        const age = (type: string) => (recent.includes(type) ? order(type) : mostRecent + 1);
        const types: AddChoice[] = typesFor(menu.placement, catalogue)
            .map((choice) => {
                const { type, setting } = choice;
                const key = setting ? `${type.type} ${setting.name} ${setting.value}` : type.type;
                return {
                    key,
                    label: setting ? `${type.label}: ${setting.value}` : type.label,
                    detail: type.library,
                    help: type.help,
                    isMinor: setting !== undefined && !recent.includes(key),
                    choice,
                };
            })
            .sort((a, b) => age(a.key) - age(b.key) || a.label.localeCompare(b.label));
        const isFree = menu.placement.kind === 'free' || menu.placement.kind === 'behind';
        return isFree ? [...types, ...annotationChoices] : types;
    }, [catalogue, menu]);
    if (!menu) return null;
    const close = () => {
        editor.graph.openAddMenu(null);
        document.getElementById('canvas')?.focus();
    };
    return (
        <Palette
            title={titleFor(menu.placement)}
            choices={choices}
            at={menu.at}
            onClose={close}
            onPick={({ key, choice }) => {
                close();
                if (key === frameKey) return void editor.annotations.addFrame(menu.point);
                if (key === noteKey) return void editor.annotations.addNote(menu.point);
                if (!choice) return;
                remember(key);
                void editor.graph.add(choice, menu.point, menu.placement);
            }}
        />
    );
}
