import { compileDelay, type CompileTimer } from './compileTimer.ts';
import type { Answer, ChangesJson, Step } from './messages.ts';
import type { Receiver } from './receiver.ts';
import { describeError, type Server } from './server.ts';
import type { Store } from './store.ts';

/** Sends changes to the document. The page shows a change when the server has confirmed it. */
export class Changes {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly timer: CompileTimer,
        private readonly receiver: Receiver,
    ) {}

    async send(message: object, compileIn = compileDelay): Promise<Answer> {
        ++this.server.unconfirmed;
        const { answer } = await this.server.connection.request(message);
        --this.server.unconfirmed;
        const hasMeaning = this.receiver.take(answer);
        if (answer.error) this.store.say(describeError(answer));
        else if (hasMeaning) this.timer.compileSoon(compileIn);
        return answer;
    }

    /** @returns undefined if there are no steps */
    apply(steps: Step[], gesture?: string, compileIn = compileDelay): Promise<Answer> | undefined {
        if (steps.length === 0) return undefined;
        return this.send({ do: 'apply', steps, ...(gesture ? { gesture } : {}) }, compileIn);
    }

    undo(): void {
        void this.send({ do: 'undo' }).then(({ error, changes, redo }) => {
            if (!error) this.store.say(isEmpty(changes) ? 'There is nothing to undo.' : `Undone: ${redo}`);
        });
    }

    redo(): void {
        void this.send({ do: 'redo' }).then(({ error, changes, undo }) => {
            if (!error) this.store.say(isEmpty(changes) ? 'There is nothing to redo.' : `Redone: ${undo}`);
        });
    }
}

function isEmpty(changes: ChangesJson | undefined): boolean {
    return Object.values(changes ?? {}).every((part) => Array.isArray(part) && part.length === 0);
}
