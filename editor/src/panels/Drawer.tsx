import { lazy, Suspense, useState } from 'react';
import { DifferenceList } from './DifferenceList.tsx';
import type { Lighting } from './Inspector.tsx';
import { Parameters } from './Parameters.tsx';
import { ProblemList } from './ProblemList.tsx';
import { useSnapshot } from '../useEditor.ts';

/** Loaded later, because the code view is large and not needed at first. */
const ProgramView = lazy(async () => ({ default: (await import('./ProgramView.tsx')).ProgramView }));

type Tab = 'problems' | 'parameters' | 'programs' | 'differences';

export function Drawer({ light, jump }: Lighting & { jump: (id: string) => void }) {
    const [open, setOpen] = useState<Tab | null>(null);
    const problems = useSnapshot((all) => all.problems);
    const message = useSnapshot((all) => all.message);
    const comparison = useSnapshot((all) => all.comparison);
    const tabs: readonly Tab[] = [
        'problems',
        'parameters',
        'programs',
        ...(comparison ? (['differences'] as const) : []),
    ];
    const errors = problems.filter((problem) => problem.severity === 'error').length;
    const counted = (count: number, word: string) => `${count} ${word}${count === 1 ? '' : 's'}`;
    const warnings = problems.length - errors;
    const names: Record<Tab, string> = {
        problems:
            problems.length === 0
                ? 'No problems'
                : `${counted(errors, 'error')}, ${counted(warnings, 'warning')}`,
        parameters: 'Parameters',
        programs: 'Programs',
        differences: counted(comparison?.differences.length ?? 0, 'difference'),
    };
    const press = (event: React.KeyboardEvent, tab: Tab) => {
        const move = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        if (!move) return;
        const next = tabs[(tabs.indexOf(tab) + move + tabs.length) % tabs.length]!;
        document.getElementById(`tab-${next}`)?.focus();
        event.stopPropagation();
    };
    return (
        <footer id="drawer">
            <div className="tabs">
                <div role="tablist" aria-label="Drawer">
                    {tabs.map((tab) => (
                        <button
                            key={tab}
                            id={`tab-${tab}`}
                            role="tab"
                            aria-selected={open === tab}
                            aria-controls="drawer-content"
                            className={tab === 'problems' && errors > 0 ? 'error' : ''}
                            onKeyDown={(event) => press(event, tab)}
                            onClick={() => setOpen(open === tab ? null : tab)}
                        >
                            {names[tab]}
                        </button>
                    ))}
                </div>
                <span className="message" role="status" aria-live="polite">
                    {message}
                </span>
            </div>
            <div
                id="drawer-content"
                role="tabpanel"
                aria-labelledby={open ? `tab-${open}` : undefined}
                hidden={!open}
            >
                {open === 'problems' && <ProblemList jump={jump} />}
                {open === 'parameters' && <Parameters jump={jump} />}
                {open === 'differences' && <DifferenceList jump={jump} />}
                {open === 'programs' && (
                    <Suspense>
                        <ProgramView light={light} />
                    </Suspense>
                )}
            </div>
        </footer>
    );
}
