import type { ComparisonJson, Difference, EdgeRecord, NodeState } from './messages.ts';

/** How the document differs from the file on disk, as the graph shows it. */
export interface Comparison {
    differences: readonly Difference[];
    /** By node id. Does not contain nodes that were only moved. */
    nodes: ReadonlyMap<string, 'added' | 'changed'>;
    /** The keys of edges that the file does not have. */
    newEdges: ReadonlySet<string>;
    /** Nodes and edges that only the file contains. */
    removedNodes: readonly NodeState[];
    removedEdges: readonly EdgeRecord[];
}

export const noDifferences: Comparison = {
    differences: [],
    nodes: new Map(),
    newEdges: new Set(),
    removedNodes: [],
    removedEdges: [],
};

export function edgeKey(edge: EdgeRecord): string {
    return [edge.tail, edge.tailPort, edge.head, edge.headPort].join('\n');
}

const isMove = ({ property }: Difference) => property === 'PositionX' || property === 'PositionY';

export function comparisonFrom({ differences, removedNodes }: ComparisonJson): Comparison {
    const nodes = new Map<string, 'added' | 'changed'>();
    for (const difference of differences) {
        const { kind, node } = difference;
        if (node !== undefined && kind !== 'removed' && !isMove(difference)) nodes.set(node, kind);
    }
    return {
        differences,
        nodes,
        newEdges: new Set(differences.flatMap(({ edgeAfter }) => (edgeAfter ? edgeKey(edgeAfter) : []))),
        removedNodes,
        removedEdges: differences.flatMap(({ edgeBefore }) => edgeBefore ?? []),
    };
}

/** The text of a difference, without the name of its node. */
export function textOf({ text, node }: Difference): string {
    return text.replace(`node "${node}" `, '').replace(/^\([^)]*\):? /, '');
}
