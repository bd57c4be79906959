import { useSnapshot } from '../useEditor.ts';

const words = { added: 'not in the file', removed: 'only in the file', changed: 'changed' };

/** How the document differs from its file. */
export function DifferenceList({ jump }: { jump: (id: string) => void }) {
    const comparison = useSnapshot((all) => all.comparison);
    const graph = useSnapshot((all) => all.document);
    if (!comparison) return null;
    if (comparison.differences.length === 0) return <p>There are no differences from the file on disk.</p>;
    return (
        <ul className="problems">
            {comparison.differences.map(({ kind, node, edgeAfter, edgeBefore, text }) => {
                const place = node ?? edgeAfter?.head ?? edgeBefore?.head;
                return (
                    <li key={text}>
                        <button
                            className={`problem difference ${kind}`}
                            disabled={place === undefined || !graph.numbers.has(place)}
                            onClick={() => place !== undefined && jump(place)}
                        >
                            <b>{words[kind]}</b> {text}
                        </button>
                    </li>
                );
            })}
        </ul>
    );
}
