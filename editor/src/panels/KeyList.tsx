import { useEffect, useRef } from 'react';

const keys: readonly (readonly [string, string])[] = [
    [
        'Tab, Space, double click',
        'add a node after the selected node, in the selected edge, or at the pointer',
    ],
    ['C', 'connect the selected node'],
    ['G, N', 'add a frame around the selection; add a note'],
    ['E, B', 'select an edge of the selected node, or the next edge; add a point that bends the edge'],
    [
        'Arrow keys',
        'go to the next node in this direction; with Alt, follow an edge; with Shift, add the node to the selection',
    ],
    ['Ctrl + arrow keys', 'move the selection; with Shift, further'],
    ['Enter', 'edit the properties of the selection; Esc returns to the graph'],
    ['Delete', 'delete the selection; with Ctrl, also connect the nodes before and after it'],
    ['Ctrl + Z, Ctrl + Shift + Z', 'undo, redo'],
    ['Ctrl + C, X, V, D', 'copy, cut, paste, duplicate'],
    ['Ctrl + S', 'save; with Shift, save a copy'],
    ['Ctrl + F', 'find a node, a frame or a note; Shift + Enter adds it to the selection'],
    ['Ctrl + A', 'select all'],
    ['F, A', 'show the selection; show the whole graph'],
    ['L', 'lay out the selection, or the whole graph'],
    ['P', 'pin the image of the first output of the selected node; press again for the next output'],
    ['T', 'show or hide small images on all nodes; with Shift, on the selected nodes'],
    ['D', 'show or hide the differences from the file on disk'],
    ['Wheel; two fingers', 'zoom; move the view'],
    ['Drag with the middle or right button; Space + drag', 'move the view'],
    ['?', 'show this list'],
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
