import { parseNumbers } from './numbers.ts';
import { nodeById, valueOf, type DocumentState } from './document.ts';
import type { NodeProperty } from './edits.ts';
import type { NodeState } from './messages.ts';

/** A parameter of the material: a value, a texture or a stream of the mesh. */
export interface Parameter {
    stream: string;
    tag: string;
    count: number;
    /** All attributes, as `mox bindings` prints them. */
    values: Record<string, string>;
}

/** Values of properties that are shown but not confirmed yet, by node and property. */
export type SentValues = ReadonlyMap<string, string>;

/** Parses the output of `mox bindings`. Requires a browser, because it uses the XML parser of the browser. */
export function readParameters(xml: string): Parameter[] {
    const elements = new DOMParser().parseFromString(xml, 'application/xml').querySelectorAll('binding');
    return [...elements].map((element) => {
        const values = Object.fromEntries([...element.attributes].map((a) => [a.name, a.value]));
        return {
            stream: values.stream ?? '',
            tag: values.tag ?? '',
            count: Number(values.count ?? 1),
            values,
        };
    });
}

/** The numbers of a parameter. If there are too few, the last one is repeated. */
export function parameterNumbers(parameter: Parameter): number[] {
    const numbers = parseNumbers(parameter.values.default ?? '');
    return Array.from({ length: parameter.count }, (_, i) => numbers[Math.min(i, numbers.length - 1)] ?? 0);
}

/**
 * The parameter whose value a property of a node sets. This is an assumption: it is the parameter with
 * the name of the node and the numbers of the property. The next compilation corrects a wrong result.
 * @param value current value of the property, if it differs from that of the node
 */
export function parameterOf(
    parameters: readonly Parameter[],
    node: NodeState,
    property: string,
    value?: string,
): Parameter | undefined {
    const shown = node.properties?.find((candidate) => candidate.name === property);
    if (!shown || (shown.kind !== 'float' && shown.kind !== 'colour')) return undefined;
    const name = valueOf(node, 'Name');
    const numbers = parseNumbers(value ?? shown.value).map(Math.fround);
    return parameters.find(
        (parameter) =>
            parameter.stream === 'float' &&
            parameter.tag === name &&
            parameter.count <= numbers.length &&
            parameterNumbers(parameter).every((value, i) => Math.fround(value) === numbers[i]),
    );
}

export function withNumbers(parameter: Parameter, numbers: readonly number[]): Parameter {
    const text = numbers.slice(0, parameter.count).join(', ');
    return { ...parameter, values: { ...parameter.values, default: text } };
}

/** Parameters with new values of properties; undefined if one of the properties does not set a parameter. */
export function withSettings(
    document: DocumentState,
    parameters: readonly Parameter[],
    sentValues: SentValues,
    settings: readonly NodeProperty[],
): { parameters: Parameter[]; sentValues: SentValues } | undefined {
    const next = [...parameters];
    const sent = new Map(sentValues);
    for (const { node: id, name, value } of settings) {
        const node = nodeById(document, id);
        const key = `${id} ${name}`;
        const parameter = node && parameterOf(next, node, name, sent.get(key));
        if (!parameter) return undefined;
        sent.set(key, value);
        next[next.indexOf(parameter)] = withNumbers(parameter, parseNumbers(value));
    }
    return { parameters: next, sentValues: sent };
}
