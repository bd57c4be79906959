import type { EdgeState } from '../model/messages.ts';
import { useEditor } from '../useEditor.ts';
import { NumberField } from './fields.tsx';

/** The ends of an edge, and the points that it passes through. */
export function EdgePanel({ edge }: { edge: EdgeState }) {
    const editor = useEditor();
    const { tail, tailPort, head, headPort, points = [] } = edge.record;
    const set = (index: number, name: 'x' | 'y', value: number, gesture?: string) =>
        editor.annotations.setPoints(
            edge,
            points.map((point, i) => (i === index ? { ...point, [name]: value } : point)),
            index,
            gesture,
        );
    return (
        <section className="panel" id="inspector" aria-label="Inspector">
            <h2>Edge</h2>
            <p>
                {tail}, {tailPort} → {head}, {headPort}
            </p>
            {points.map((point, i) => (
                <div key={i} className="row">
                    <label>point {i + 1}</label>
                    <span className="colour">
                        {(['x', 'y'] as const).map((name) => (
                            <NumberField
                                key={name}
                                label={`point ${i + 1}, ${name}`}
                                value={point[name]}
                                isWhole
                                onChange={(value, gesture) => set(i, name, Number(value), gesture)}
                            />
                        ))}
                    </span>
                    <button
                        className="reset"
                        title="Remove the point"
                        aria-label={`Remove point ${i + 1}`}
                        onClick={() => editor.annotations.removePoint(edge, i)}
                    >
                        ✕
                    </button>
                </div>
            ))}
            <button onClick={() => editor.annotations.addPoint(edge)}>Add a point</button>
        </section>
    );
}
