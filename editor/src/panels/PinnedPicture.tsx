import { useEffect, useRef } from 'react';
import { useEditor, useSnapshot } from '../useEditor.ts';

/** The image of the pinned output. */
export function PinnedPicture() {
    const editor = useEditor();
    const pinned = useSnapshot((all) => all.pinned);
    const canvas = useRef<HTMLCanvasElement>(null);
    const picture = pinned?.picture;
    useEffect(() => {
        if (picture) canvas.current?.getContext('2d')?.putImageData(picture, 0, 0);
    }, [picture]);
    if (!pinned) return null;
    const name = `${pinned.node}.${pinned.port}`;
    return (
        <section className="panel" id="pinned" aria-label="Pinned output">
            <h2>
                {name}
                <button className="fold" aria-label="Unpin" onClick={() => editor.pinned.pin(null)}>
                    ✕
                </button>
            </h2>
            <canvas
                ref={canvas}
                width={picture?.width ?? 192}
                height={picture?.height ?? 192}
                role="img"
                aria-label={`Image of ${name}`}
            />
        </section>
    );
}
