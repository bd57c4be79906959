import { comparisonFrom, noDifferences } from './comparison.ts';
import type { Server } from './server.ts';
import type { Store } from './store.ts';

/** Compares the document with the file on disk while the page shows the differences. */
export class Comparer {
    private wanted = 0;
    private done = 0;

    constructor(
        private readonly store: Store,
        private readonly server: Server,
    ) {}

    /** Shows or hides the differences. */
    toggle(): void {
        this.store.set({ comparison: this.store.get().comparison ? null : noDifferences });
        void this.compare();
    }

    /** Must be called when the connection is replaced: a running comparison never gets its result. */
    stop(): void {
        this.done = this.wanted;
    }

    async compare(): Promise<void> {
        const isRunning = this.wanted++ > this.done;
        while (!isRunning && this.done < this.wanted) {
            const { wanted } = this;
            if (this.store.get().comparison) {
                const { answer } = await this.server.ask({ do: 'compare' });
                if (answer.comparison && this.store.get().comparison)
                    this.store.set({ comparison: comparisonFrom(answer.comparison) });
            }
            this.done = wanted;
        }
    }
}
