import type { AnnotationState, Binding, ChangesJson, EdgeState, NodeState, StateJson } from './messages.ts';

export interface Point {
    x: number;
    y: number;
}

/** A copy of the server's document. It is immutable: each change creates a new copy. */
export interface DocumentState {
    nodes: ReadonlyMap<number, NodeState>;
    edges: ReadonlyMap<number, EdgeState>;
    /** Frames and notes, from back to front. */
    annotations: ReadonlyMap<number, AnnotationState>;
    /** The numbers of nodes, by id. */
    numbers: ReadonlyMap<string, number>;
    bindings: readonly Binding[];
    description: Readonly<Record<string, string>>;
    renderState: Readonly<Record<string, string>>;
}

export const emptyDocument: DocumentState = {
    nodes: new Map(),
    edges: new Map(),
    annotations: new Map(),
    numbers: new Map(),
    bindings: [],
    description: {},
    renderState: {},
};

export function documentFrom(state: StateJson): DocumentState {
    return {
        nodes: new Map(state.nodes.map((node) => [node.number, node])),
        edges: new Map(state.edges.map((edge) => [edge.number, edge])),
        annotations: new Map(state.annotations.map((annotation) => [annotation.number, annotation])),
        numbers: new Map(state.nodes.map((node) => [node.record.id, node.number])),
        bindings: state.bindings,
        description: state.description,
        renderState: state.renderState,
    };
}

export function applyChanges(document: DocumentState, changes: ChangesJson): DocumentState {
    const nodes = new Map(document.nodes);
    const edges = new Map(document.edges);
    const numbers = new Map(document.numbers);
    const forget = (number: number) => {
        const id = nodes.get(number)?.record.id;
        if (id !== undefined && numbers.get(id) === number) numbers.delete(id);
    };
    for (const number of changes.goneNodes) {
        forget(number);
        nodes.delete(number);
    }
    for (const node of changes.nodes) forget(node.number);
    for (const node of changes.nodes) {
        nodes.set(node.number, node);
        numbers.set(node.record.id, node.number);
    }
    for (const number of changes.goneEdges) edges.delete(number);
    for (const edge of changes.edges) edges.set(edge.number, edge);
    const annotations = new Map(document.annotations);
    for (const number of changes.goneAnnotations ?? []) annotations.delete(number);
    for (const annotation of changes.annotations ?? []) annotations.set(annotation.number, annotation);
    const {
        bindings = document.bindings,
        description = document.description,
        renderState = document.renderState,
    } = changes;
    return { nodes, edges, annotations, numbers, bindings, description, renderState };
}

export function nodeById(document: DocumentState, id: string): NodeState | undefined {
    const number = document.numbers.get(id);
    return number === undefined ? undefined : document.nodes.get(number);
}

/** The value of a property in the node or, if the node does not have it, in the document. */
export function valueOf(node: NodeState, property: string): string | undefined {
    const named = (candidate: { name: string }) => candidate.name === property;
    return (node.properties?.find(named) ?? node.record.properties?.find(named))?.value;
}

const knownPositions = new WeakMap<NodeState, Point>();

/** The upper left corner of a node. */
export function positionOf(node: NodeState): Point {
    const known = knownPositions.get(node);
    if (known) return known;
    const coordinate = (name: string) => {
        const value = Number(valueOf(node, name) ?? 0);
        return Number.isFinite(value) ? value : 0;
    };
    const position = { x: coordinate('PositionX'), y: coordinate('PositionY') };
    knownPositions.set(node, position);
    return position;
}

/** Edges by the id of the node at the given end. */
export function edgesAt(document: DocumentState, end: 'head' | 'tail'): Map<string, EdgeState[]> {
    const found = new Map<string, EdgeState[]>();
    for (const edge of document.edges.values()) {
        const list = found.get(edge.record[end]);
        if (list) list.push(edge);
        else found.set(edge.record[end], [edge]);
    }
    return found;
}

const positions = new Set(['PositionX', 'PositionY']);

/** The parts of a node that affect programs or images, as a string. */
function meaningOf(node: NodeState): string {
    const others = <T extends { name: string }>(list: readonly T[] | undefined) =>
        list?.filter((property) => !positions.has(property.name));
    const record = { ...node.record, properties: others(node.record.properties) ?? [] };
    return JSON.stringify({ ...node, record, properties: others(node.properties) });
}

/** Whether changes affect programs or images, unlike new positions and annotations. */
export function changesMeaning(document: DocumentState, changes: ChangesJson): boolean {
    const isOther = (node: NodeState) => {
        const old = document.nodes.get(node.number);
        return !old || meaningOf(old) !== meaningOf(node);
    };
    const isOtherEdge = ({ number, record }: EdgeState) => {
        const old = document.edges.get(number)?.record;
        const isSame = (['tail', 'tailPort', 'head', 'headPort'] as const).every(
            (end) => old?.[end] === record[end],
        );
        return !isSame;
    };
    const { edges, goneEdges, goneNodes, bindings, nodes } = changes;
    const isFewer = goneEdges.length + goneNodes.length > 0;
    return isFewer || !!bindings || nodes.some(isOther) || edges.some(isOtherEdge);
}
