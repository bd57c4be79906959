import type { Changes } from '../model/changes.ts';
import type { Comparer } from '../model/comparer.ts';
import type { Server } from '../model/server.ts';
import type { Store } from '../model/store.ts';

/** Commands for the file of the document. */
export class MaterialFile {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly changes: Changes,
        private readonly comparer: Comparer,
    ) {}

    async save(force = false): Promise<void> {
        const answer = await this.changes.send({ do: 'save', ...(force ? { force } : {}) });
        if (!answer.saved) return;
        this.store.set({ fileChange: null, message: `Saved ${this.store.get().file}.` });
        void this.comparer.compare();
    }

    /** The whole document in canonical form, as it would be saved. */
    async text(): Promise<string> {
        const { answer } = await this.server.ask({ do: 'text' });
        return answer.text ?? '';
    }

    reload(): void {
        void this.changes.send({ do: 'reload' });
    }

    keepMine(): void {
        this.store.set({ fileChange: null, message: 'Saving will replace the changed file.' });
    }

    restore(isWanted: boolean): void {
        void this.changes.send({ do: isWanted ? 'restore' : 'discard' });
    }
}
