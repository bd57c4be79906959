import type { Step } from './messages.ts';

/** Messages without steps that change the document or its folder. */
const otherActions: Record<string, string> = {
    undo: 'undo',
    redo: 'redo',
    layout: 'layout',
    paste: 'paste',
    addTexture: 'new texture',
    save: 'save',
    reload: 'loading the file',
    restore: 'restoring the unsaved changes',
    discard: 'discarding the unsaved changes',
};

/** The changes in unanswered messages: steps, and the names of actions that consist of no steps. */
export function changesIn(messages: readonly object[]): { steps: Step[]; others: string[] } {
    const steps: Step[] = [];
    const others: string[] = [];
    for (const message of messages as { do: string; steps?: Step[] }[]) {
        const action = otherActions[message.do];
        if (message.do === 'apply') steps.push(...message.steps!);
        else if (action && !others.includes(action)) others.push(action);
    }
    return { steps, others };
}
