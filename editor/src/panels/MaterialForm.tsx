import type { MaterialParts } from '../model/messages.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { TextField } from './fields.tsx';

/** Attributes of the material as a whole. For an empty attribute, each host chooses a value. */
function Part({ part }: { part: keyof MaterialParts }) {
    const editor = useEditor();
    const attributes = useSnapshot((all) => all.materialParts)[part];
    const values = useSnapshot((all) => all.document)[part];
    return attributes.map(({ name, choices }) => {
        const value = values[name] ?? '';
        const set = (next: string) => editor.values.setMaterial(part, name, next);
        return (
            <div key={name} className="row">
                <label title={name}>{name}</label>
                {choices ? (
                    <select aria-label={name} value={value} onChange={(event) => set(event.target.value)}>
                        <option value="">–</option>
                        {choices.map((choice) => (
                            <option key={choice}>{choice}</option>
                        ))}
                    </select>
                ) : (
                    <TextField label={name} value={value} onChange={set} />
                )}
            </div>
        );
    });
}

/** Shown while nothing is selected. */
export function MaterialForm() {
    return (
        <section className="panel" id="inspector" aria-label="Inspector">
            <h2>Material</h2>
            <Part part="description" />
            <h3>Render state</h3>
            <Part part="renderState" />
        </section>
    );
}
