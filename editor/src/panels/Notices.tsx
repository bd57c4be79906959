import { positionOf, type DocumentState } from '../model/document.ts';
import type { NodeState } from '../model/messages.ts';
import { changesIn } from '../model/unconfirmed.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { download } from './download.ts';

function hasPlaces(document: DocumentState): boolean {
    const isElsewhere = (node: NodeState) => positionOf(node).x !== 0 || positionOf(node).y !== 0;
    return document.nodes.size < 2 || [...document.nodes.values()].some(isElsewhere);
}

/** Notices that require a decision, such as a lost connection or a file that has changed on disk. */
export function Notices() {
    const editor = useEditor();
    const lost = useSnapshot((all) => all.lost);
    const waiting = useSnapshot((all) => all.waiting);
    const fileChange = useSnapshot((all) => all.fileChange);
    const file = useSnapshot((all) => all.file);
    const unsaved = useSnapshot((all) => all.unsaved);
    const isComparing = useSnapshot((all) => all.comparison !== null);
    const isPlaced = useSnapshot((all) => hasPlaces(all.document));
    if (lost) {
        const { steps, others } = changesIn(lost);
        return (
            <div className="notice error" role="alert">
                <p>
                    The connection to mox was lost, so this page can no longer change the material. All
                    confirmed changes are safe{unsaved ? ' in a journal next to the file' : ''}. To continue,
                    run “mox edit {file}” again.
                </p>
                {others.length > 0 && (
                    <p>
                        {`The following actions were not confirmed and cannot be downloaded: ${others.join(', ')}.`}
                    </p>
                )}
                {steps.length > 0 && (
                    <button
                        onClick={() =>
                            download(
                                'unconfirmed.json',
                                'application/json',
                                JSON.stringify({ version: 1, steps }, null, 2),
                            )
                        }
                    >
                        Download unconfirmed changes (
                        {steps.length === 1 ? '1 step' : `${steps.length} steps`} for “mox apply”)
                    </button>
                )}
            </div>
        );
    }
    if (waiting)
        return (
            <div className="notice" role="alert">
                <p>
                    {waiting.error
                        ? `An earlier session left unsaved changes that cannot be read: ${waiting.error}`
                        : `An earlier session ended with ${waiting.changes === 1 ? '1 unsaved change' : `${waiting.changes} unsaved changes`}.`}
                </p>
                {!waiting.error && <button onClick={() => editor.file.restore(true)}>Restore them</button>}
                <button onClick={() => editor.file.restore(false)}>Discard them</button>
            </div>
        );
    if (fileChange)
        return (
            <div className="notice" role="alert">
                <p>
                    {fileChange.error === ''
                        ? `${file} has changed on disk. It differs from the material on this page:`
                        : `The changed file cannot be loaded: ${file}: ${fileChange.error}`}
                </p>
                {fileChange.differences.length > 0 && (
                    <ul className="differences">
                        {fileChange.differences.slice(0, 100).map((difference) => (
                            <li key={difference}>{difference}</li>
                        ))}
                    </ul>
                )}
                {fileChange.error === '' && !isComparing && (
                    <button onClick={() => editor.comparer.toggle()}>
                        Show the differences in the graph
                    </button>
                )}
                <button onClick={() => editor.file.keepMine()}>Keep my version</button>
                {fileChange.error === '' && (
                    <button onClick={() => editor.file.reload()}>Load the file</button>
                )}
                <button onClick={() => void editor.file.save(true)}>Replace the file</button>
            </div>
        );
    if (!isPlaced)
        return (
            <div className="notice">
                <p>The nodes of this file have no positions yet, so they overlap.</p>
                <button onClick={() => editor.places.layOut()}>Lay out</button>
            </div>
        );
    return null;
}
