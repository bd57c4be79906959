import { edgesAt, nodeById, type DocumentState } from './document.ts';
import type { CataloguePort, CatalogueType, EdgeRecord, NodeState } from './messages.ts';
import { titleOf } from './shape.ts';

export type Catalogue = ReadonlyMap<string, CatalogueType>;

/** Whether a value can be converted from one number of components to another. */
export function countsConvert(from: number | null | undefined, to: number | null | undefined): boolean {
    return !from || !to || from === to || from === 1;
}

/** The ids of the nodes on a path along edges; undefined if there is no path. */
export function findPath(document: DocumentState, from: string, to: string): string[] | undefined {
    const leaving = edgesAt(document, 'tail');
    const cameFrom = new Map<string, string | undefined>([[from, undefined]]);
    const waiting = [from];
    for (const id of waiting) {
        if (id === to) {
            const path: string[] = [];
            for (let step: string | undefined = id; step !== undefined; step = cameFrom.get(step))
                path.unshift(step);
            return path;
        }
        for (const edge of leaving.get(id) ?? []) {
            if (cameFrom.has(edge.record.head)) continue;
            cameFrom.set(edge.record.head, id);
            waiting.push(edge.record.head);
        }
    }
    return undefined;
}

/** Whether the type of a node determines the number of components of an input. */
function isFixed(catalogue: Catalogue, node: NodeState, port: string): boolean {
    const type = catalogue.get(node.record.type);
    const lists: (CataloguePort[] | undefined)[] = [
        type?.inputs,
        ...(type?.variants ?? []).map((variant) => variant.inputs),
    ];
    return lists.some((list) => list?.some((p) => p.name === port && p.components !== undefined));
}

/** The number of components that an edge at a port must have; null if the node adapts to the edge. */
export function componentsAt(
    catalogue: Catalogue,
    node: NodeState,
    side: 'input' | 'output',
    port: string,
): number | null {
    if (side === 'input' && !isFixed(catalogue, node, port)) return null;
    const ports = (side === 'input' ? node.inputs : node.outputs) ?? [];
    return ports.find((candidate) => candidate.name === port)?.components ?? null;
}

/** Explains to the user why an edge is not possible; an empty string if it is. */
export function whyNot(document: DocumentState, catalogue: Catalogue, edge: EdgeRecord): string {
    const tail = nodeById(document, edge.tail);
    const head = nodeById(document, edge.head);
    if (!tail || !head) return 'One of the two nodes no longer exists.';
    const output = tail.outputs?.find((port) => port.name === edge.tailPort);
    const input = head.inputs?.find((port) => port.name === edge.headPort);
    if (!output || !input) return 'An edge must connect an output to an input.';
    if (edge.tail === edge.head) return 'A node cannot be connected to itself.';
    const path = findPath(document, edge.head, edge.tail);
    if (path) {
        const titles = [...path, edge.head].map((id) => titleOf(nodeById(document, id)!));
        return `This edge would create a cycle: ${titles.join(' → ')}.`;
    }
    if (isFixed(catalogue, head, edge.headPort) && !countsConvert(output.components, input.components)) {
        return `An output with ${countWords(output.components!)} cannot be connected to an input with ${countWords(input.components!)}.`;
    }
    return '';
}

/** A port of a node, as one end of a new edge. */
export interface PortAt {
    node: string;
    port: string;
    side: 'input' | 'output';
    components: number | null;
}

/** All ports to which a port can be connected. */
export function partnersOf(document: DocumentState, catalogue: Catalogue, from: PortAt): PortAt[] {
    const isOutput = from.side === 'output';
    const next = edgesAt(document, isOutput ? 'head' : 'tail');
    const excluded = new Set([from.node]); // edges to these would create a cycle
    for (const id of excluded)
        for (const edge of next.get(id) ?? []) excluded.add(isOutput ? edge.record.tail : edge.record.head);
    const own = nodeById(document, from.node);
    const partners: PortAt[] = [];
    for (const node of document.nodes.values()) {
        if (excluded.has(node.record.id)) continue;
        for (const port of (isOutput ? node.inputs : node.outputs) ?? []) {
            const [tail, head] = isOutput ? [from, port] : [port, from];
            const isJudged = isOutput
                ? isFixed(catalogue, node, port.name)
                : own && isFixed(catalogue, own, from.port);
            if (isJudged && !countsConvert(tail.components, head.components)) continue;
            const side = isOutput ? 'input' : 'output';
            partners.push({ node: node.record.id, port: port.name, side, components: port.components });
        }
    }
    return partners;
}

function countWords(count: number): string {
    return count === 1 ? '1 component' : `${count} components`;
}

/** The first port that can be connected; ports with the same number of components take precedence. */
export function fittingPort(
    ports: readonly CataloguePort[],
    components: number | null,
    side: 'input' | 'output',
): CataloguePort | undefined {
    const fits = ports.filter((port) =>
        side === 'input'
            ? countsConvert(components, port.components)
            : countsConvert(port.components, components),
    );
    return fits.find((port) => port.components === components) ?? fits[0];
}
