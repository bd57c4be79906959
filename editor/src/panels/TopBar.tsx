import type { Editor } from '../editor.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { download } from './download.ts';

/** The server does not write copies of the document, so the browser saves the copy. */
export async function saveCopy(editor: Editor): Promise<void> {
    const { file } = editor.store.get();
    const text = await editor.file.text();
    if (text === '') return;
    download(file.replace(/(\.[^.]*)?$/, '_copy$1'), 'application/xml', text);
    editor.store.say('The browser saves the copy. Copy the textures to the same folder.');
}

export function TopBar({
    onFind,
    onAdd,
    onFrame,
    onKeys,
}: {
    onFind: () => void;
    onAdd: () => void;
    onFrame: () => void;
    onKeys: () => void;
}) {
    const editor = useEditor();
    const file = useSnapshot((all) => all.file);
    const unsaved = useSnapshot((all) => all.unsaved);
    const undo = useSnapshot((all) => all.undo);
    const redo = useSnapshot((all) => all.redo);
    const hasThumbnails = useSnapshot((all) => all.hasThumbnails);
    const isComparing = useSnapshot((all) => all.comparison !== null);
    return (
        <header>
            <h1>
                {file}
                {unsaved && <span title="There are unsaved changes."> ●</span>}
            </h1>
            <button
                disabled={undo === ''}
                title={undo && `Undo: ${undo}`}
                onClick={() => editor.changes.undo()}
            >
                Undo
            </button>
            <button
                disabled={redo === ''}
                title={redo && `Redo: ${redo}`}
                onClick={() => editor.changes.redo()}
            >
                Redo
            </button>
            <button disabled={!unsaved} onClick={() => void editor.file.save()}>
                Save
            </button>
            <button
                title="Save a copy of the material under a different name or in a different folder"
                onClick={() => void saveCopy(editor)}
            >
                Save a copy
            </button>
            <span className="gap" />
            <button onClick={onAdd}>Add</button>
            <button onClick={onFind}>Find</button>
            <button title="Show the whole graph" onClick={onFrame}>
                Frame
            </button>
            <button
                title="Lay out the selected nodes, or the whole graph"
                onClick={() => editor.places.layOut()}
            >
                Lay out
            </button>
            <button
                aria-pressed={hasThumbnails}
                title="Show small images on all nodes"
                onClick={() => editor.thumbnails.toggle()}
            >
                Images
            </button>
            <button
                aria-pressed={isComparing}
                title="Show the differences from the file on disk"
                onClick={() => editor.comparer.toggle()}
            >
                Compare
            </button>
            <button aria-label="Keys" onClick={onKeys}>
                ?
            </button>
        </header>
    );
}
