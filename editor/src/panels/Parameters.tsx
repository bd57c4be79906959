import { formatNumber } from '../model/numbers.ts';
import { parameterNumbers, type Parameter } from '../model/parameters.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import { ColourField, NumberField, TextField } from './fields.tsx';

function Value({ parameter }: { parameter: Parameter }) {
    const editor = useEditor();
    const set = (value: string, gesture?: string) =>
        editor.values.setParameter(parameter, { default: value }, gesture);
    if (parameter.stream !== 'float')
        return <TextField label={parameter.tag} value={parameter.values.default ?? ''} onChange={set} />;
    const numbers = parameterNumbers(parameter);
    if (parameter.values.gui === 'colour' || numbers.length === 3)
        return (
            <ColourField
                label={parameter.tag}
                count={numbers.length}
                separator=", "
                value={numbers.map(formatNumber).join(' ')}
                onChange={set}
            />
        );
    return (
        <span className="colour">
            {numbers.map((number, i) => (
                <NumberField
                    key={i}
                    label={numbers.length > 1 ? `${parameter.tag}, component ${i + 1}` : parameter.tag}
                    value={number}
                    onChange={(text, gesture) => {
                        const next = numbers.map(formatNumber);
                        next[i] = text;
                        set(next.join(', '), gesture);
                    }}
                />
            ))}
        </span>
    );
}

/** All parameters of the material. Changing a value does not require recompilation. */
export function Parameters({ jump }: { jump: (id: string) => void }) {
    const editor = useEditor();
    const parameters = useSnapshot((all) => all.parameters);
    const document = useSnapshot((all) => all.document);
    if (parameters.length === 0) return <p>The material has no parameters.</p>;
    const isOwn = ({ stream, tag }: Parameter) =>
        document.bindings.some((binding) => binding.stream === stream && binding.tag === tag);
    const nodeOf = (tag: string) =>
        [...document.nodes.values()].find((node) =>
            node.properties?.some((property) => property.name === 'Name' && property.value === tag),
        )?.record.id;
    return (
        <table className="parameters">
            <thead>
                <tr>
                    <th scope="col">name</th>
                    <th scope="col">kind</th>
                    <th scope="col">value</th>
                    <th scope="col">
                        <span className="unseen">reset</span>
                    </th>
                </tr>
            </thead>
            <tbody>
                {parameters.map((parameter) => {
                    const node = nodeOf(parameter.tag);
                    return (
                        <tr key={`${parameter.stream} ${parameter.tag}`} title={parameter.values.desc}>
                            <th scope="row">
                                {node ? (
                                    <button onClick={() => jump(node)}>{parameter.tag}</button>
                                ) : (
                                    parameter.tag
                                )}
                            </th>
                            <td>{parameter.stream}</td>
                            <td>
                                <Value parameter={parameter} />
                            </td>
                            <td>
                                {isOwn(parameter) && (
                                    <button
                                        className="reset"
                                        title="Reset to the value of the node"
                                        aria-label={`${parameter.tag}: reset to the value of the node`}
                                        onClick={() => editor.values.resetParameter(parameter)}
                                    >
                                        ↺
                                    </button>
                                )}
                            </td>
                        </tr>
                    );
                })}
            </tbody>
        </table>
    );
}
