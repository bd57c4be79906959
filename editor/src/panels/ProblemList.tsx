import { useSnapshot } from '../useEditor.ts';

export function ProblemList({ jump }: { jump: (id: string) => void }) {
    const problems = useSnapshot((all) => all.problems);
    if (problems.length === 0) return <p>This material has no problems.</p>;
    return (
        <ul className="problems">
            {problems.map((problem, i) => (
                <li key={i}>
                    <button
                        className={`problem ${problem.severity}`}
                        disabled={!problem.node}
                        onClick={() => problem.node && jump(problem.node)}
                    >
                        <b>{problem.severity}</b> {problem.node && <em>{problem.node}</em>}
                        {problem.port && <em>.{problem.port}</em>} {problem.message}
                    </button>
                </li>
            ))}
        </ul>
    );
}
