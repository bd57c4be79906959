import type { Changes } from '../model/changes.ts';
import type { Point } from '../model/document.ts';
import type { Selection } from '../model/selection.ts';
import type { Server } from '../model/server.ts';
import { shapeOf } from '../model/shape.ts';
import type { Store } from '../model/store.ts';
import { around } from '../model/viewport.ts';
import type { Graph } from './graph.ts';
import type { Places } from './places.ts';

/** Commands that copy, cut and paste the selection and the contents of the selected frames. */
export class Clipboard {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
        private readonly changes: Changes,
        private readonly selection: Selection,
        private readonly places: Places,
        private readonly graph: Graph,
    ) {}

    async copy(): Promise<string> {
        const held = this.selection.heldIds();
        if (held.ids.length + held.annotations.length === 0) return '';
        const { answer } = await this.server.ask({ do: 'copy', ...held });
        return answer.text ?? '';
    }

    /** Removes the items that are copied. */
    cut(): void {
        const { nodes, annotations } = this.selection.held();
        this.selection.select(nodes, annotations);
        this.graph.deleteSelected(false);
    }

    async paste(text: string, at?: Point): Promise<void> {
        if (text === '') return;
        const answer = await this.changes.send({ do: 'paste', text, ...(at ?? {}) });
        if (answer.ids) this.selection.selectIds(answer.ids, answer.annotations);
    }

    async duplicate(): Promise<void> {
        const { nodes, areas } = this.places.held();
        const { document } = this.store.get();
        const boxes = [...nodes].map(([n, at]) => ({ ...at, ...shapeOf(document.nodes.get(n)!) }));
        const area = around([...boxes, ...areas.values()]);
        if (!area) return;
        const text = await this.copy();
        await this.paste(text, { x: area.x + 30, y: area.y + area.height + 30 });
    }
}
