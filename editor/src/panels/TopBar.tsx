import { useEditor, useSnapshot } from '../useEditor.ts';

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
    const hasThumbnails = useSnapshot((all) => all.thumbnails !== null);
    return (
        <header>
            <h1>
                {file}
                {unsaved && <span title="There are changes that are not saved."> ●</span>}
            </h1>
            <button disabled={undo === ''} title={undo && `Undo: ${undo}`} onClick={() => editor.undo()}>
                Undo
            </button>
            <button disabled={redo === ''} title={redo && `Redo: ${redo}`} onClick={() => editor.redo()}>
                Redo
            </button>
            <button disabled={!unsaved} onClick={() => void editor.save()}>
                Save
            </button>
            <span className="gap" />
            <button onClick={onAdd}>Add</button>
            <button onClick={onFind}>Find</button>
            <button title="Show the whole graph" onClick={onFrame}>
                Frame
            </button>
            <button title="Lay out the selected nodes, or all" onClick={() => editor.layOut()}>
                Lay out
            </button>
            <button
                aria-pressed={hasThumbnails}
                title="Small pictures on the nodes"
                onClick={() => editor.toggleThumbnails()}
            >
                Pictures
            </button>
            <button aria-label="Keys" onClick={onKeys}>
                ?
            </button>
        </header>
    );
}
