import { createContext, useContext, useRef, useSyncExternalStore } from 'react';
import type { Editor } from './editor.ts';
import type { Snapshot } from './model/store.ts';

export const EditorContext = createContext<Editor | null>(null);

export function useEditor(): Editor {
    return useContext(EditorContext)!;
}

/** Returns a part of the snapshot; the component re-renders when that part changes. */
export function useSnapshot<T>(select: (snapshot: Snapshot) => T): T {
    const editor = useEditor();
    const last = useRef<{ snapshot: Snapshot; value: T } | null>(null);
    return useSyncExternalStore(editor.store.subscribe, () => {
        const snapshot = editor.store.get();
        if (last.current?.snapshot !== snapshot) last.current = { snapshot, value: select(snapshot) };
        return last.current.value;
    });
}
