import { documentFrom, type DocumentState } from '../src/model/document.ts';
import type { CatalogueType, EdgeState, NodeState, Port } from '../src/model/messages.ts';

export function port(name: string, components: number | null = null): Port {
    return { name, label: name, components, precision: null, connected: false, conflict: false };
}

let lastNumber = 0;

export function node(id: string, inputs: Port[], outputs: Port[], at: [number, number] = [0, 0]): NodeState {
    const properties = [
        { name: 'PositionX', kind: 'float', value: String(at[0]) },
        { name: 'PositionY', kind: 'float', value: String(at[1]) },
    ];
    return {
        number: ++lastNumber,
        record: { id, type: 'Test', version: 0, properties },
        title: id,
        inputs,
        outputs,
    };
}

/** @param edges in the form "tail.port head.port" */
export function documentOf(nodes: NodeState[], edges: string[]): DocumentState {
    const edgeStates = edges.map((text): EdgeState => {
        const [tail, tailPort, head, headPort] = text.split(/[. ]/) as [string, string, string, string];
        return { number: ++lastNumber, record: { tail, tailPort, head, headPort } };
    });
    return documentFrom({
        nodes,
        edges: edgeStates,
        annotations: [],
        description: {},
        renderState: {},
        bindings: [],
    });
}

export function type(name: string, inputs: [string, number?][], outputs: [string, number?][]): CatalogueType {
    const ports = (list: [string, number?][]) =>
        list.map(([portName, components]) => ({
            name: portName,
            label: portName,
            ...(components ? { components } : {}),
        }));
    return {
        type: name,
        label: name,
        library: 'Test',
        help: '',
        listed: true,
        version: 3,
        inputs: ports(inputs),
        outputs: ports(outputs),
        variants: [],
        properties: [],
    };
}
