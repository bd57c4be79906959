import { noMoves } from './annotations.ts';
import type { Comparer } from './comparer.ts';
import { compileDelay, type CompileTimer } from './compileTimer.ts';
import type { Connection } from './connection.ts';
import { applyChanges, changesMeaning, documentFrom } from './document.ts';
import type { Answer } from './messages.ts';
import { describeError, type Server } from './server.ts';
import type { Store } from './store.ts';
import type { Thumbnails } from './pictures.ts';

/** Updates the snapshot from the messages of the server. */
export class Receiver {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly timer: CompileTimer,
        private readonly comparer: Comparer,
        private readonly thumbnails: Thumbnails,
    ) {}

    /** Uses a new connection, either the first one or one that replaces a lost connection. */
    async open(connection: Connection): Promise<void> {
        this.server.connection = connection;
        this.server.unconfirmed = 0;
        this.thumbnails.stopDrawing();
        this.comparer.stop();
        if (this.store.get().lost)
            this.store.set({ lost: null, message: 'The connection has been restored.' });
        const state = this.fetchState();
        const catalogue = await connection.request({ do: 'catalogue' });
        await state;
        if (catalogue.answer.error) this.store.say(describeError(catalogue.answer));
        const types = catalogue.answer.types ?? [];
        this.store.set({
            catalogue: new Map(types.map((type) => [type.type, type])),
            ...(catalogue.answer.material ? { materialParts: catalogue.answer.material } : {}),
            targets: catalogue.answer.targets ?? [],
        });
        this.timer.compileSoon(0);
    }

    lose(unanswered: object[]): void {
        this.store.set({
            lost: [...(this.store.get().lost ?? []), ...unanswered],
            message: 'The connection to mox was lost.',
        });
    }

    notice(notice: Answer): void {
        if (this.take(notice)) this.timer.compileSoon(compileDelay);
        if (notice.event === 'replaced') {
            void this.fetchState().then(() => this.timer.compileSoon(0));
        } else if (notice.event === 'file') {
            const differences = notice.differences ?? [];
            const error = notice.error?.message ?? '';
            this.store.set({ fileChange: notice.changed || error !== '' ? { differences, error } : null });
            void this.comparer.compare();
        } else if (notice.event === 'saved') {
            this.store.set({ fileChange: null, message: 'Another window has saved the material.' });
            void this.comparer.compare();
        }
    }

    private async fetchState(): Promise<void> {
        this.take((await this.server.connection.request({ do: 'state' })).answer);
    }

    /** @returns whether programs and images may have changed */
    take(answer: Answer): boolean {
        this.takeStatus(answer);
        const hasMeaning = this.takeChanges(answer);
        return this.takeState(answer) || hasMeaning;
    }

    private takeStatus(answer: Answer): void {
        if (answer.unsaved === undefined) return;
        const { revision, unsaved, undo = '', redo = '', waiting = null } = answer;
        const isOther = revision !== this.store.get().revision;
        this.store.set({ revision, unsaved, undo, redo, waiting });
        if (isOther) void this.comparer.compare();
    }

    private takeChanges(answer: Answer): boolean {
        if (!answer.changes) return false;
        const old = this.store.get();
        const hasMeaning = changesMeaning(old.document, answer.changes);
        const document = applyChanges(old.document, answer.changes);
        const edge = document.edges.get(old.selectedEdge ?? -1);
        const point = old.selectedPoint;
        this.store.set({
            document,
            meaning: hasMeaning ? old.meaning + 1 : old.meaning,
            selection: keysIn(document.nodes, old.selection),
            selectedAnnotations: keysIn(document.annotations, old.selectedAnnotations),
            thumbnailExceptions: keysIn(document.nodes, old.thumbnailExceptions),
            selectedEdge: edge?.number ?? null,
            selectedPoint: point !== null && point < (edge?.record.points?.length ?? 0) ? point : null,
        });
        return hasMeaning;
    }

    private takeState(answer: Answer): boolean {
        if (!answer.state) return false;
        const old = this.store.get();
        this.store.set({
            document: documentFrom(answer.state),
            meaning: old.meaning + 1,
            file: answer.file ?? old.file,
            ownMesh: answer.ownMesh ?? old.ownMesh,
            selection: new Set(),
            selectedAnnotations: new Set(),
            selectedEdge: null,
            selectedPoint: null,
            moves: noMoves,
            thumbnailExceptions: new Set(),
            fileChange: null,
        });
        return true;
    }
}

function keysIn(items: ReadonlyMap<number, unknown>, numbers: ReadonlySet<number>): Set<number> {
    return new Set([...numbers].filter((number) => items.has(number)));
}
