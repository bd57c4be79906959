import type { CompileTimer } from './compileTimer.ts';
import type { Answer } from './messages.ts';
import { readParameters } from './parameters.ts';
import { describeError, type Server } from './server.ts';
import type { Programs, Store } from './store.ts';
import type { PinnedOutput, Thumbnails } from './pictures.ts';

/** Compiles the document, and then updates everything that depends on it: programs, parameters, problems, images. */
export class Compiler {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly timer: CompileTimer,
        private readonly pinned: PinnedOutput,
        private readonly thumbnails: Thumbnails,
    ) {}

    async compile(): Promise<void> {
        const { answer } = await this.server.connection.request({ do: 'compile', targets: ['essl'] });
        // A change that is not confirmed yet also makes the answer out of date, and the page may already show it.
        if (answer.outOfDate || this.server.unconfirmed > 0) {
            this.timer.compileAgain();
            return;
        }
        const files = answer.programs?.essl;
        if (files) {
            const programs = {
                vertex: files['.vertex.essl'] ?? '',
                fragment: files['.fragment.essl'] ?? '',
                reflection: files['.reflection.json'] ?? '',
            };
            const parameters = readParameters(answer.bindings ?? '');
            this.store.set({ isPictureStale: false, parameters, sentValues: new Map() });
            if (!isSame(programs, this.store.get().programs)) this.store.set({ programs });
        } else {
            this.store.set({ isPictureStale: true });
        }
        const check = await this.server.connection.request({ do: 'problems' });
        if (check.answer.problems) this.store.set({ problems: check.answer.problems });
        else if (check.answer.outOfDate) this.timer.compileAgain();
        else if (check.answer.error) this.store.say(describeError(check.answer));
        void this.pinned.draw();
        void this.thumbnails.draw();
    }

    /** The programs in a language, and for each line of the Cg programs the node that it comes from. */
    async programsIn(target: string): Promise<Answer> {
        return (await this.server.connection.request({ do: 'compile', targets: [target] })).answer;
    }
}

function isSame(a: Programs, b: Programs | null): boolean {
    return b !== null && a.vertex === b.vertex && a.fragment === b.fragment && a.reflection === b.reflection;
}
