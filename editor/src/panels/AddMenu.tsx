import { useMemo } from 'react';
import { typesFor } from '../model/edits.ts';
import type { Placement } from '../model/edits.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { Palette } from './Palette.tsx';

const recentKey = 'mox-recent';
const mostRecent = 5;

const frameKey = '.frame'; // no type begins with a dot
const noteKey = '.note';
const annotationChoices = [
    { key: frameKey, label: 'Frame', detail: 'G', help: 'A titled frame around the selection.' },
    { key: noteKey, label: 'Note', detail: 'N', help: 'Text for those who read the graph.' },
];

function recentTypes(): string[] {
    return (localStorage.getItem(recentKey) ?? '').split(' ').filter((name) => name !== '');
}

function remember(type: string): void {
    const types = [type, ...recentTypes().filter((other) => other !== type)];
    localStorage.setItem(recentKey, types.slice(0, mostRecent).join(' '));
}

function titleFor(placement: Placement): string {
    switch (placement.kind) {
        case 'behind':
            return `Add a node behind “${placement.node}”`;
        case 'into':
            return 'Add a node into the edge';
        case 'at':
            return placement.port.side === 'output'
                ? 'Add a node that takes this'
                : 'Add a node that gives this';
        case 'free':
            return 'Add a node';
    }
}

/** Types of nodes to search; those used last come first. */
export function AddMenu() {
    const editor = useEditor();
    const menu = useSnapshot((all) => all.addMenu);
    const catalogue = useSnapshot((all) => all.catalogue);
    const choices = useMemo(() => {
        if (!menu) return [];
        const recent = recentTypes();
        const order = (type: string) => (recent.indexOf(type) + mostRecent + 1) % (mostRecent + 1);
        const age = (type: string) => (recent.includes(type) ? order(type) : mostRecent + 1);
        const types = typesFor(menu.placement, catalogue)
            .sort((a, b) => age(a.type) - age(b.type) || a.label.localeCompare(b.label))
            .map(({ type, label, library, help }) => ({ key: type, label, detail: library, help }));
        const isFree = menu.placement.kind === 'free' || menu.placement.kind === 'behind';
        return isFree ? [...types, ...annotationChoices] : types;
    }, [catalogue, menu]);
    if (!menu) return null;
    const close = () => {
        editor.openAddMenu(null);
        document.getElementById('canvas')?.focus();
    };
    return (
        <Palette
            title={titleFor(menu.placement)}
            choices={choices}
            at={menu.at}
            onClose={close}
            onPick={(choice) => {
                close();
                if (choice.key === frameKey) return void editor.addFrame(menu.point);
                if (choice.key === noteKey) return void editor.addNote(menu.point);
                remember(choice.key);
                void editor.add(choice.key, menu.point, menu.placement);
            }}
        />
    );
}
