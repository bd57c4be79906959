import { compileDelay, type CompileTimer } from './compileTimer.ts';
import type { Answer, Step } from './messages.ts';
import type { Receiver } from './receiver.ts';
import { describeError, type Server } from './server.ts';
import type { Store } from './store.ts';

/** Sends changes of the document. The page shows a change when the server has confirmed it. */
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
        const title = this.store.get().undo;
        void this.send({ do: 'undo' }).then((answer) => {
            if (!answer.error) this.store.say(title ? `Undone: ${title}` : 'There is nothing to undo.');
        });
    }

    redo(): void {
        const title = this.store.get().redo;
        void this.send({ do: 'redo' }).then((answer) => {
            if (!answer.error) this.store.say(title ? `Redone: ${title}` : 'There is nothing to redo.');
        });
    }
}
