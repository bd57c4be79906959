import { edgesAt, nodeById, positionOf, valueOf, type DocumentState, type Point } from './document.ts';
import type { CatalogueType, EdgeRecord, NodeState, Property, Step } from './messages.ts';
import { fittingPort, whyNot, type Catalogue, type PortAt } from './connect.ts';
import { portTop, shapeFor, shapeOf } from './shape.ts';

/** Changes of a document as steps for the server. None of these functions changes the document. */

export type NodeProperty = { node: string } & Property;

/** Where a new node is added. */
export type Placement =
    | { kind: 'free' }
    | { kind: 'behind'; node: string }
    | { kind: 'into'; edge: EdgeRecord }
    | { kind: 'at'; port: PortAt };

/** A node type, with an optional setting that determines what the node does, such as the function of Maths. */
export interface TypeChoice {
    /** With the ports that result from the setting. */
    type: CatalogueType;
    setting?: Property;
}

const gap = 60;

export function freshId(document: DocumentState, { type, setting }: TypeChoice): string {
    const words = (setting?.value ?? type.label).match(/[A-Za-z0-9]+/g) ?? ['node'];
    const base = words
        .map((word, i) => (i === 0 ? word[0]!.toLowerCase() : word[0]!.toUpperCase()) + word.slice(1))
        .join('');
    const name = /^[A-Za-z]/.test(base) ? base : `node${base}`;
    if (!document.numbers.has(name)) return name;
    for (let i = 2; ; ++i) if (!document.numbers.has(`${name}${i}`)) return `${name}${i}`;
}

export function moveSettings(id: string, point: Point): NodeProperty[] {
    return [
        { node: id, name: 'PositionX', kind: 'float', value: String(Math.round(point.x)) },
        { node: id, name: 'PositionY', kind: 'float', value: String(Math.round(point.y)) },
    ];
}

export function moveNodes(moves: ReadonlyMap<number, Point>, document: DocumentState): Step[] {
    const settings = [...moves].flatMap(([number, point]) => {
        const node = document.nodes.get(number);
        return node ? moveSettings(node.record.id, point) : [];
    });
    return settings.length > 0 ? [{ do: 'setProperties', settings }] : [];
}

/** Adds an edge, and removes the edge that the input already has. */
export function connect(document: DocumentState, edge: EdgeRecord): Step[] {
    const before = edgesAt(document, 'head')
        .get(edge.head)
        ?.find((other) => other.record.headPort === edge.headPort);
    if (before && before.record.tail === edge.tail && before.record.tailPort === edge.tailPort) return [];
    return [...(before ? [removeEdge(before.record)] : []), { do: 'addEdge', ...edge }];
}

export function removeEdge(edge: EdgeRecord): Step {
    const { tail, tailPort, head, headPort } = edge;
    return { do: 'removeEdge', tail, tailPort, head, headPort };
}

export function removeNodes(nodes: readonly NodeState[]): Step[] {
    return nodes.map((node) => ({ do: 'removeNode', id: node.record.id }));
}

/**
 * Removes nodes, and connects the source of the first connected input of each to the inputs that the
 * node was connected to, if the values can be converted.
 */
export function removeAndRewire(
    document: DocumentState,
    catalogue: Catalogue,
    nodes: readonly NodeState[],
): Step[] {
    const gone = new Set(nodes.map((node) => node.record.id));
    const entering = edgesAt(document, 'head');
    const sourceOf = (id: string, seen: Set<string>): { tail: string; tailPort: string } | undefined => {
        if (seen.has(id)) return undefined;
        seen.add(id);
        const inputs = nodeById(document, id)?.inputs ?? [];
        const order = (port: string) => inputs.findIndex((input) => input.name === port);
        const edges = [...(entering.get(id) ?? [])].sort(
            (a, b) => order(a.record.headPort) - order(b.record.headPort),
        );
        const edge = edges[0]?.record;
        if (!edge) return undefined;
        return gone.has(edge.tail) ? sourceOf(edge.tail, seen) : edge;
    };
    const steps = removeNodes(nodes);
    for (const { record } of document.edges.values()) {
        if (!gone.has(record.tail) || gone.has(record.head)) continue;
        const source = sourceOf(record.tail, new Set());
        if (!source) continue;
        const edge = { ...record, tail: source.tail, tailPort: source.tailPort };
        const { tail, tailPort, head, headPort } = edge;
        if (whyNot(document, catalogue, edge) === '')
            steps.push({ do: 'addEdge', tail, tailPort, head, headPort });
    }
    return steps;
}

/** Adds a node and, if it has suitable ports, connects it according to its placement. */
export function addNode(
    document: DocumentState,
    choice: TypeChoice,
    point: Point,
    placement: Placement,
): { id: string; steps: Step[] } {
    const { type, setting } = choice;
    const id = freshId(document, choice);
    const at = placePoint(document, type, id, placement, point);
    const place = moveSettings(id, at).map(({ name, kind, value }) => ({ name, kind, value }));
    const properties = [...(setting ? [setting] : []), ...place];
    const steps: Step[] = [{ do: 'addNode', id, type: type.type, version: type.version, properties }];
    if (placement.kind === 'at') {
        steps.push(...joinPort(document, id, type, placement.port));
    } else if (placement.kind === 'behind') {
        const output = nodeById(document, placement.node)?.outputs?.[0];
        if (output) {
            const port: PortAt = {
                node: placement.node,
                port: output.name,
                side: 'output',
                components: output.components,
            };
            steps.push(...joinPort(document, id, type, port));
        }
    } else if (placement.kind === 'into') {
        steps.push(...splitEdge(document, id, type, placement.edge));
    }
    return { id, steps };
}

/** The upper left corner of a new node. If it is connected to a port, its own port is at the point. */
function placePoint(
    document: DocumentState,
    type: CatalogueType,
    id: string,
    placement: Placement,
    point: Point,
): Point {
    if (placement.kind === 'at') {
        const { side, components } = placement.port;
        const opposite = side === 'output' ? 'input' : 'output';
        const ports = side === 'output' ? type.inputs : type.outputs;
        const port = fittingPort(ports, components, opposite);
        const { width } = shapeFor(type.label, id, type.inputs, type.outputs);
        const top = portTop(port ? ports.indexOf(port) : 0);
        return { x: side === 'output' ? point.x : point.x - width, y: point.y - top };
    }
    if (placement.kind !== 'behind') return point;
    const node = nodeById(document, placement.node);
    if (!node) return point;
    const corner = positionOf(node);
    return { x: corner.x + shapeOf(node).width + gap, y: corner.y };
}

function joinPort(document: DocumentState, id: string, type: CatalogueType, at: PortAt): Step[] {
    if (at.side === 'output') {
        const input = fittingPort(type.inputs, at.components, 'input');
        if (!input) return [];
        return [{ do: 'addEdge', tail: at.node, tailPort: at.port, head: id, headPort: input.name }];
    }
    const output = fittingPort(type.outputs, at.components, 'output');
    if (!output) return [];
    return connect(document, { tail: id, tailPort: output.name, head: at.node, headPort: at.port });
}

function splitEdge(document: DocumentState, id: string, type: CatalogueType, edge: EdgeRecord): Step[] {
    const tail = nodeById(document, edge.tail)?.outputs?.find((port) => port.name === edge.tailPort);
    const head = nodeById(document, edge.head)?.inputs?.find((port) => port.name === edge.headPort);
    const input = fittingPort(type.inputs, tail?.components ?? null, 'input');
    const output = fittingPort(type.outputs, head?.components ?? null, 'output');
    if (!input || !output) return [];
    return [
        removeEdge(edge),
        { do: 'addEdge', tail: edge.tail, tailPort: edge.tailPort, head: id, headPort: input.name },
        { do: 'addEdge', tail: id, tailPort: output.name, head: edge.head, headPort: edge.headPort },
    ];
}

/** The node type that reads a texture through a binding. */
export const textureType = 'CoreTexture';

/** Adds a node that reads a texture file; its parameter is named after the file. */
export function addTextureNode(
    document: DocumentState,
    type: CatalogueType,
    file: string,
    point: Point,
): { id: string; steps: Step[] } {
    const words = file.replace(/\.[^.]*$/, '').match(/[A-Za-z0-9]+/g) ?? ['texture'];
    const base = words.join('_').replace(/^(?=\d)/, 'texture_');
    const isTaken = (name: string) =>
        [...document.nodes.values()].some((node) => valueOf(node, 'Name') === name) ||
        document.bindings.some((binding) => binding.tag === name);
    let name = base;
    for (let i = 2; isTaken(name); ++i) name = `${base}_${i}`;
    const { id, steps } = addNode(document, { type }, point, { kind: 'free' });
    const named: Step = {
        do: 'setProperties',
        settings: [{ node: id, name: 'Name', kind: 'string', value: name }],
    };
    return { id, steps: [...steps, named, setBinding(document, 'texture', name, { default: file })] };
}

export function setBinding(
    document: DocumentState,
    stream: string,
    tag: string,
    values: Record<string, string>,
): Step {
    const old = document.bindings.find((binding) => binding.stream === stream && binding.tag === tag);
    return { do: 'setBinding', stream, tag, values: { ...old?.values, ...values } };
}

/** A type without a setting, and with each setting that determines what the node does. */
function choicesOf(type: CatalogueType): TypeChoice[] {
    const isDeciding = (name: string) =>
        name === 'Function' || type.variants.some((variant) => variant.property === name);
    const deciding = type.properties.filter(
        (property) => property.kind === 'enum' && property.visible && isDeciding(property.name),
    );
    const settings = deciding.flatMap(({ name, choices = [] }) =>
        choices.map((value) => ({ name, kind: 'enum', value })),
    );
    return [
        { type },
        ...settings.map((setting) => {
            const ports = type.variants.find(
                (variant) => variant.property === setting.name && variant.value === setting.value,
            );
            const { inputs = type.inputs, outputs = type.outputs } = ports ?? {};
            return { type: { ...type, inputs, outputs }, setting };
        }),
    ];
}

/** The choices that can be added at a placement. */
export function typesFor(placement: Placement, catalogue: Catalogue): TypeChoice[] {
    const fits = ({ type: { inputs, outputs } }: TypeChoice) => {
        if (placement.kind === 'into') return inputs.length > 0 && outputs.length > 0;
        if (placement.kind !== 'at') return true;
        const { side, components } = placement.port;
        return side === 'output'
            ? fittingPort(inputs, components, 'input') !== undefined
            : fittingPort(outputs, components, 'output') !== undefined;
    };
    return [...catalogue.values()]
        .filter((type) => type.listed)
        .flatMap(choicesOf)
        .filter(fits);
}
