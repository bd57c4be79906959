import { documentFrom, type DocumentState } from '../src/model/document.ts';
import type { CatalogueType, EdgeRecord, EdgeState, NodeState, Port, Step } from '../src/model/messages.ts';

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

/** @param text "tail.port head.port" */
export function edgeFrom(text: string): EdgeRecord {
    const [tail, tailPort, head, headPort] = text.split(/[. ]/) as [string, string, string, string];
    return { tail, tailPort, head, headPort };
}

/** The steps that concern edges, each as "addEdge tail.port head.port" or with another name. */
export function edgesOf(steps: Step[]): string[] {
    return steps.flatMap((step) =>
        'tail' in step ? [`${step.do} ${step.tail}.${step.tailPort} ${step.head}.${step.headPort}`] : [],
    );
}

/** @param edges each as "tail.port head.port" */
export function documentOf(nodes: NodeState[], edges: string[]): DocumentState {
    const edgeStates = edges.map((text): EdgeState => ({ number: ++lastNumber, record: edgeFrom(text) }));
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
