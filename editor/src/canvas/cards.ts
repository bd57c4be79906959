import { Position, type NodeHandle } from '@xyflow/react';
import type { Editor } from '../editor.ts';
import type { Point } from '../model/document.ts';
import type { NodeState, Problem } from '../model/messages.ts';
import { portTop, shapeOf, type Shape } from '../model/shape.ts';
import type { Snapshot } from '../model/store.ts';
import { contains, overlap, visibleBox, type Box, type Viewport } from '../model/viewport.ts';
import type { CardNode } from './NodeCard.tsx';

const regionMargin = 0.3; // on each side of the visible area, relative to its size
const largestRegion = 2.5; // width relative to that of the visible area
const noProblems: readonly Problem[] = [];

/** The region whose nodes React Flow shows: the old one as long as it fits the view. */
export function regionAround(viewport: Viewport, size: Shape, old: Box | null): Box {
    const seen = visibleBox(viewport, size, 0);
    const isFitting = old && contains(old, seen) && old.width < largestRegion * seen.width;
    return isFitting ? old : visibleBox(viewport, size, regionMargin);
}

/** Creates React Flow's nodes. Unchanged nodes and lists remain the same objects, so they are not re-rendered. */
export class CardCache {
    private cards = new Map<number, { card: CardNode; parts: unknown[] }>();
    private list: CardNode[] = [];

    cardsOf(editor: Editor, snapshot: Snapshot, region: Box, lit: ReadonlySet<string>): CardNode[] {
        const problems = new Map<string, Problem[]>();
        for (const problem of snapshot.problems) {
            if (!problem.node) continue;
            const list = problems.get(problem.node);
            if (list) list.push(problem);
            else problems.set(problem.node, [problem]);
        }
        const next = new Map<number, { card: CardNode; parts: unknown[] }>();
        for (const node of snapshot.document.nodes.values()) {
            const place = editor.places.placeOf(node);
            if (!overlap(region, { ...place, ...shapeOf(node) })) continue;
            const own = problems.get(node.record.id) ?? noProblems;
            const isSelected = snapshot.selection.has(node.number);
            const pinned = snapshot.pinned?.node === node.record.id ? snapshot.pinned.port : null;
            const isLit = lit.has(node.record.id);
            const text = own.map(({ severity, port, message }) => [severity, port, message]).join();
            const shown =
                editor.thumbnails.isShownOn(node) && snapshot.thumbnails.get(node.record.id)?.picture;
            const thumbnail = shown || null;
            const mark = snapshot.comparison?.nodes.get(node.record.id) ?? null;
            const parts = [node, place.x, place.y, text, isSelected, pinned, isLit, thumbnail, mark];
            const old = this.cards.get(node.number);
            const isSame = old && parts.every((part, i) => part === old.parts[i]);
            const data = { node, problems: own, pinned, isLit, thumbnail, mark };
            next.set(node.number, isSame ? old : { card: makeCard(node, place, isSelected, data), parts });
        }
        this.cards = next;
        const list = [...next.values()].map(({ card }) => card);
        const isSameList = list.length === this.list.length && list.every((card, i) => card === this.list[i]);
        if (!isSameList) this.list = list;
        return this.list;
    }
}

function makeCard(node: NodeState, position: Point, selected: boolean, data: CardNode['data']): CardNode {
    const { width, height } = shapeOf(node);
    const handle = (id: string, index: number, type: 'source' | 'target'): NodeHandle => ({
        id,
        type,
        position: type === 'source' ? Position.Right : Position.Left,
        x: (type === 'source' ? width : 0) - 6,
        y: portTop(index) - 6,
        width: 12,
        height: 12,
    });
    return {
        id: String(node.number),
        type: 'card',
        position,
        selected,
        data,
        width,
        height,
        handles: [
            ...(node.inputs ?? []).map((port, i) => handle(port.name, i, 'target')),
            ...(node.outputs ?? []).map((port, i) => handle(port.name, i, 'source')),
        ],
    };
}
