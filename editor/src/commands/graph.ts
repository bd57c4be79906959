import { remove as removeAnnotations } from '../model/annotations.ts';
import type { Changes } from '../model/changes.ts';
import type { Point } from '../model/document.ts';
import { addNode, addTextureNode, connect, removeAndRewire, removeEdge } from '../model/edits.ts';
import { removeNodes, textureType, type Placement, type TypeChoice } from '../model/edits.ts';
import type { EdgeRecord } from '../model/messages.ts';
import type { Selection } from '../model/selection.ts';
import { describeError, type Server } from '../model/server.ts';
import type { AddMenu, Store } from '../model/store.ts';
import type { Annotations } from './annotations.ts';

/** Commands that add, connect, rename and remove nodes. */
export class Graph {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly changes: Changes,
        private readonly selection: Selection,
        private readonly annotations: Annotations,
    ) {}

    openAddMenu(addMenu: AddMenu | null): void {
        this.store.set({ addMenu });
    }

    /** The default placement of a new node: in the selected edge, or after the selected node. */
    placement(): Placement {
        const edge = this.selection.edge();
        if (edge) return { kind: 'into', edge: edge.record };
        const nodes = this.selection.nodes();
        return nodes.length === 1 && (nodes[0]!.outputs?.length ?? 0) > 0
            ? { kind: 'behind', node: nodes[0]!.record.id }
            : { kind: 'free' };
    }

    async add(choice: TypeChoice, point: Point, placement: Placement): Promise<void> {
        const { id, steps } = addNode(this.store.get().document, choice, point, placement);
        const answer = await this.changes.apply(steps);
        if (answer && !answer.error) this.selection.selectIds([id]);
    }

    /** Copies an image file to the folder of the document and adds a node that reads it. */
    async addTexture(name: string, bytes: Uint8Array, point: Point): Promise<void> {
        const { answer } = await this.server.connection.request({ do: 'addTexture', name }, bytes);
        const { catalogue, document } = this.store.get();
        const type = catalogue.get(textureType);
        if (answer.error || answer.file === undefined || !type) {
            this.store.say(describeError(answer));
            return;
        }
        const { id, steps } = addTextureNode(document, type, answer.file, point);
        const added = await this.changes.apply(steps);
        if (added && !added.error) this.selection.selectIds([id]);
    }

    connect(edge: EdgeRecord): void {
        void this.changes.apply(connect(this.store.get().document, edge));
    }

    rename(id: string, newId: string): void {
        void this.changes.apply([{ do: 'renameNode', id, newId }]);
    }

    deleteSelected(rewire: boolean): void {
        const { document, catalogue, selectedPoint } = this.store.get();
        const edge = this.selection.edge();
        if (edge && selectedPoint !== null) {
            this.annotations.removePoint(edge, selectedPoint);
            return;
        }
        if (edge) {
            void this.changes.apply([removeEdge(edge.record)]);
            return;
        }
        const nodes = this.selection.nodes();
        void this.changes.apply([
            ...(rewire ? removeAndRewire(document, catalogue, nodes) : removeNodes(nodes)),
            ...removeAnnotations(this.selection.annotations()),
        ]);
    }
}
