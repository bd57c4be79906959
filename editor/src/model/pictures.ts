import type { CompileTimer } from './compileTimer.ts';
import type { Reply } from './connection.ts';
import { nodeById } from './document.ts';
import type { NodeState } from './messages.ts';
import type { Server } from './server.ts';
import type { Store } from './store.ts';

/** The output of a node whose image the page shows in a panel. */
export class PinnedOutput {
    private mesh = 'sphere';

    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly timer: CompileTimer,
    ) {}

    pin(pinned: { node: string; port: string } | null): void {
        this.store.set({ pinned });
        void this.draw();
    }

    /** Sets the mesh of the image; it must be one of the shapes of the server. */
    pinOn(mesh: string): void {
        if (mesh === this.mesh) return;
        this.mesh = mesh;
        void this.draw();
    }

    async draw(): Promise<void> {
        const { pinned } = this.store.get();
        if (!pinned) return;
        const { mesh } = this;
        const node = `${pinned.node}.${pinned.port}`;
        const reply = await this.server.ask({ do: 'picture', node, mesh, width: 192, height: 192 });
        const picture = toImage(reply);
        if (reply.answer.outOfDate) this.timer.compileAgain();
        const now = this.store.get().pinned;
        if (picture && mesh === this.mesh && now?.node === pinned.node && now.port === pinned.port)
            this.store.set({ pinned: { ...pinned, picture } });
    }
}

/** The small images on nodes. */
export class Thumbnails {
    private wanted: readonly string[] = [];
    private isDrawing = false;

    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly timer: CompileTimer,
    ) {}

    /** Shows or hides the small images of all nodes. */
    toggle(): void {
        const hasThumbnails = !this.store.get().hasThumbnails;
        this.store.set({ hasThumbnails, thumbnailExceptions: new Set(), thumbnails: new Map() });
        void this.draw();
    }

    /** Shows the small images of some nodes, or hides them if all of these nodes show theirs. */
    toggleOf(nodes: readonly NodeState[]): void {
        const { hasThumbnails, thumbnailExceptions } = this.store.get();
        const isShown = !nodes.every((node) => this.isShownOn(node));
        const exceptions = new Set(thumbnailExceptions);
        for (const { number } of nodes)
            if (isShown === hasThumbnails) exceptions.delete(number);
            else exceptions.add(number);
        this.store.set({ thumbnailExceptions: exceptions });
        void this.draw();
    }

    isShownOn(node: NodeState): boolean {
        const { hasThumbnails, thumbnailExceptions } = this.store.get();
        return hasThumbnails !== thumbnailExceptions.has(node.number);
    }

    /** Sets the nodes in view; small images are rendered only for these. */
    want(ids: readonly string[]): void {
        this.wanted = ids;
        void this.draw();
    }

    /** Must be called when the connection is replaced, because the image in progress never arrives. */
    stopDrawing(): void {
        this.isDrawing = false;
    }

    /** Renders the images that are missing or out of date, one after another. */
    async draw(): Promise<void> {
        if (this.isDrawing) return;
        this.isDrawing = true;
        for (let id = this.next(); id !== undefined; id = this.next()) {
            const { meaning } = this.store.get();
            const message = { do: 'picture', node: id, mesh: 'plane', width: 64, height: 64 };
            const reply = await this.server.connection.request(message);
            if (reply.answer.outOfDate) this.timer.compileAgain();
            if (reply.answer.outOfDate || this.store.get().lost) break;
            const isGood = !reply.answer.problems?.some((problem) => problem.severity === 'error');
            const picture = isGood ? toImage(reply) : undefined;
            const thumbnails = new Map(this.store.get().thumbnails);
            thumbnails.set(id, { meaning, ...(picture ? { picture } : {}) });
            this.store.set({ thumbnails });
        }
        this.isDrawing = false;
    }

    private next(): string | undefined {
        const { thumbnails, document, meaning } = this.store.get();
        return this.wanted.find((id) => {
            const node = nodeById(document, id);
            if (!node?.outputs?.length || !this.isShownOn(node)) return false;
            return thumbnails.get(id)?.meaning !== meaning;
        });
    }
}

function toImage(reply: Reply): ImageData | undefined {
    const { picture } = reply.answer;
    if (!picture || !reply.bytes) return undefined;
    return new ImageData(new Uint8ClampedArray(reply.bytes), picture.width, picture.height);
}
