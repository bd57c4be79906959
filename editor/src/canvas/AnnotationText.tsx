import { useEffect, useRef } from 'react';
import { titleHeight } from '../model/annotations.ts';
import type { AnnotationState } from '../model/messages.ts';
import { toScreen, type Viewport } from '../model/viewport.ts';
import { useEditor } from '../useEditor.ts';

/** A text field over a note or over the title of a frame. Losing the focus saves the text; Esc discards it. */
export function AnnotationText({
    annotation,
    viewport,
    onClose,
}: {
    annotation: AnnotationState;
    viewport: Viewport;
    onClose: () => void;
}) {
    const editor = useEditor();
    const field = useRef<HTMLTextAreaElement>(null);
    const { record } = annotation;
    const isFrame = record.kind === 'frame';
    const area = editor.places.areaOf(annotation);
    const corner = toScreen(viewport, area);
    const height = (isFrame ? titleHeight : area.height) * viewport.zoom;
    useEffect(() => field.current!.select(), []);
    return (
        <textarea
            ref={field}
            className="annotation-text"
            autoFocus
            aria-label={isFrame ? 'title' : 'text'}
            defaultValue={record.text}
            style={{
                left: corner.x,
                top: corner.y,
                width: Math.max(area.width * viewport.zoom, 120),
                height: Math.max(height, 28),
            }}
            onBlur={(event) => {
                const text = event.target.value;
                if (text !== record.text) editor.annotations.set({ ...record, text });
                onClose();
            }}
            onKeyDown={(event) => {
                const isDone = event.key === 'Enter' && (isFrame || event.ctrlKey);
                if (!isDone && event.key !== 'Escape') return;
                event.preventDefault();
                event.stopPropagation();
                if (event.key === 'Escape') event.currentTarget.value = record.text;
                document.getElementById('canvas')?.focus();
            }}
        />
    );
}
