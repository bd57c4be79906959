import { useEffect, useRef } from 'react';

const keys: readonly (readonly [string, string])[] = [
    [
        'Tab, Space, double click',
        'add a node: behind the selected node, into the selected edge, or at the pointer',
    ],
    ['C', 'connect the selected node'],
    ['G, N', 'add a frame around the selection, a note'],
    ['E, B', 'select an edge at the selected node, and the next one; bend it with a new point'],
    ['Arrow keys', 'go to the next node in this direction; with Alt along edges'],
    ['Shift + arrow keys', 'move the selection'],
    ['Enter', 'edit what is selected; Esc comes back'],
    ['Delete', 'delete; with Ctrl, connect what was before and behind'],
    ['Ctrl + Z, Ctrl + Shift + Z', 'undo, redo'],
    ['Ctrl + C, X, V, D', 'copy, cut, paste, duplicate'],
    ['Ctrl + S', 'save; with Shift, save a copy'],
    ['Ctrl + F', 'find a node, a frame or a note'],
    ['Ctrl + A', 'select all'],
    ['F, A', 'show the selection, show all'],
    ['L', 'lay out the selection, or all'],
    ['P', 'pin the picture of the selected node’s first output; again, of the next'],
    ['T', 'small pictures on the nodes, on or off'],
    ['D', 'mark what differs from the file on disk, on or off'],
    ['Wheel; two fingers', 'zoom; move'],
    ['Middle or right button, or Space and drag', 'move the view'],
    ['?', 'this list'],
];

export function KeyList({ onClose }: { onClose: () => void }) {
    const dialog = useRef<HTMLDialogElement>(null);
    useEffect(() => dialog.current?.showModal(), []);
    return (
        <dialog ref={dialog} aria-label="Keys" onClose={onClose} onClick={() => dialog.current?.close()}>
            <h2>Keys</h2>
            <dl>
                {keys.map(([key, what]) => (
                    <div key={key}>
                        <dt>{key}</dt>
                        <dd>{what}</dd>
                    </div>
                ))}
            </dl>
            <button autoFocus>Close</button>
        </dialog>
    );
}
