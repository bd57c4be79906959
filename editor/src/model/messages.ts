/** The messages between the server and the page, which docs/json.md describes. */

export interface Property {
    name: string;
    kind: string;
    value: string;
}

export interface NodeRecord {
    id: string;
    type: string;
    version: number;
    properties?: Property[];
}

export interface EdgeRecord {
    tail: string;
    tailPort: string;
    head: string;
    headPort: string;
    /** The points that the edge passes through, from tail to head. */
    points?: readonly { x: number; y: number }[];
}

export interface AnnotationRecord {
    id: string;
    kind: 'frame' | 'note';
    text: string;
    x: number;
    y: number;
    width: number;
    height: number;
    /** Such as "#4080c0". */
    colour?: string;
}

export interface Port {
    name: string;
    label: string;
    components: number | null;
    precision: string | null;
    connected: boolean;
    conflict: boolean;
}

export interface ShownProperty extends Property {
    editable: boolean;
}

export interface NodeState {
    number: number;
    record: NodeRecord;
    title?: string;
    placeholder?: boolean;
    foreground?: number[];
    background?: number[];
    inputs?: Port[];
    outputs?: Port[];
    /** The properties that are currently visible. */
    properties?: ShownProperty[];
}

export interface EdgeState {
    number: number;
    record: EdgeRecord;
}

export interface AnnotationState {
    number: number;
    record: AnnotationRecord;
}

export interface Binding {
    stream: string;
    tag: string;
    values?: Record<string, string>;
}

export interface StateJson {
    nodes: NodeState[];
    edges: EdgeState[];
    annotations: AnnotationState[];
    description: Record<string, string>;
    renderState: Record<string, string>;
    bindings: Binding[];
}

export interface ChangesJson extends Partial<Omit<StateJson, 'nodes' | 'edges'>> {
    nodes: NodeState[];
    edges: EdgeState[];
    goneNodes: number[];
    goneEdges: number[];
    goneAnnotations?: number[];
}

export type Step =
    | ({ do: 'addNode'; before?: string } & NodeRecord)
    | { do: 'removeNode'; id: string }
    | { do: 'renameNode'; id: string; newId: string }
    | ({ do: 'addEdge'; beforeHead?: string; beforeHeadPort?: string } & EdgeRecord)
    | ({ do: 'removeEdge' } & EdgeRecord)
    | ({ do: 'setPoints' } & EdgeRecord)
    | ({ do: 'addAnnotation' | 'setAnnotation' } & AnnotationRecord)
    | { do: 'removeAnnotation'; id: string }
    | { do: 'setProperties'; settings: ({ node: string } & Property)[] }
    | ({ do: 'setBinding' } & Binding)
    | { do: 'setDescription' | 'setRenderState'; values: Record<string, string> }
    | { do: 'removeBinding'; stream: string; tag: string };

export interface Problem {
    severity: 'error' | 'warning';
    rule: string;
    message: string;
    file?: string;
    line?: number;
    column?: number;
    node?: string;
    port?: string;
}

export interface ErrorJson {
    message: string;
    file?: string;
    line?: number;
    node?: string;
    port?: string;
    step?: number;
}

export interface CataloguePort {
    name: string;
    label: string;
    components?: number;
    precision?: string;
}

export interface CatalogueProperty {
    name: string;
    kind: string;
    default: unknown;
    help: string;
    visible: boolean;
    editable: boolean;
    choices?: string[];
    range?: [number, number];
}

export interface CatalogueType {
    type: string;
    label: string;
    library: string;
    help: string;
    listed: boolean;
    version: number;
    inputs: CataloguePort[];
    outputs: CataloguePort[];
    variants: {
        property: string;
        value: string;
        inputs?: CataloguePort[];
        outputs?: CataloguePort[];
    }[];
    properties: CatalogueProperty[];
}

export interface Waiting {
    changes?: number;
    error?: string;
}

/** The attributes that the description and the render state of a material can have. */
export interface MaterialParts {
    description: { name: string; choices?: string[] }[];
    renderState: { name: string; choices?: string[] }[];
}

/** The message also contains binary data: the streams as 32-bit floats, followed by 32-bit indices. */
export interface MeshJson {
    name: string;
    vertices: number;
    indices: number;
    streams: { stream: string; components: number }[];
    viewFrom: [number, number, number];
}

/** One difference between the document and the file. */
export interface Difference {
    kind: 'added' | 'removed' | 'changed';
    text: string;
    node?: string;
    property?: string;
    edgeBefore?: EdgeRecord;
    edgeAfter?: EdgeRecord;
}

export interface ComparisonJson {
    differences: Difference[];
    /** In their state in the file. */
    removedNodes: NodeState[];
}

/** An answer of the server, or a notice about the action of another window. */
export interface Answer {
    id?: number | null;
    event?: string;
    revision: number;
    unsaved?: boolean;
    undo?: string;
    redo?: string;
    waiting?: Waiting;
    error?: ErrorJson;
    outOfDate?: boolean;
    state?: StateJson;
    file?: string;
    changes?: ChangesJson;
    changed?: boolean;
    differences?: string[];
    comparison?: ComparisonJson;
    text?: string;
    ids?: string[];
    annotations?: string[];
    problems?: Problem[];
    programs?: Record<string, Record<string, string>>;
    lineNodes?: Record<string, Record<string, string[]>>;
    bindings?: string;
    texture?: { format: 'unorm8' | 'half'; levels: { width: number; height: number; layers?: number }[] };
    picture?: { width: number; height: number };
    mesh?: MeshJson;
    /** The name of the mesh that the host provides. */
    ownMesh?: string;
    types?: CatalogueType[];
    material?: MaterialParts;
    /** The languages in which the server can compile. */
    targets?: string[];
    saved?: boolean;
}
