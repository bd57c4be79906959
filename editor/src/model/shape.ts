import type { NodeState, Port } from './messages.ts';
import type { Point } from './document.ts';

/** Sizes of nodes in pixels. The layout of the server uses the same sizes. */

export const headerHeight = 44;
export const rowHeight = 23;
const padding = 8;
const iconSide = 32;
const widthOfCharacter = 0.65;
const pixelsPerPoint = 96 / 72;
const longestName = 40;

export interface Shape {
    width: number;
    height: number;
}

const shapes = new WeakMap<NodeState, Shape>();

function widthOf(text: string, points: number): number {
    return Math.min([...text].length, longestName) * points * widthOfCharacter * pixelsPerPoint;
}

type Labelled = readonly { label: string }[];

function widthOfPorts(ports: Labelled): number {
    return Math.max(0, ...ports.map((port) => widthOf(port.label, 9) + 16 + widthOf('float4', 8)));
}

export function titleOf(node: NodeState): string {
    return node.title ?? node.record.id;
}

export function shapeFor(title: string, name: string, inputs: Labelled, outputs: Labelled): Shape {
    const header = iconSide + Math.max(widthOf(title, 11), widthOf(name, 8));
    return {
        width: Math.round(Math.max(header, widthOfPorts(inputs) + widthOfPorts(outputs)) + 2 * padding),
        height: headerHeight + Math.max(inputs.length, outputs.length) * rowHeight + padding,
    };
}

export function shapeOf(node: NodeState): Shape {
    const known = shapes.get(node);
    if (known) return known;
    const name = node.placeholder ? node.record.id + node.record.type : node.record.id;
    const shape = shapeFor(titleOf(node), name, node.inputs ?? [], node.outputs ?? []);
    shapes.set(node, shape);
    return shape;
}

export function portTop(index: number): number {
    return headerHeight + (Math.max(index, 0) + 0.5) * rowHeight;
}

/** Where the edge at a port begins or ends, relative to the node's upper left corner. */
export function portPoint(node: NodeState, side: 'input' | 'output', port: string): Point {
    const ports = (side === 'input' ? node.inputs : node.outputs) ?? [];
    const index = ports.findIndex((candidate) => candidate.name === port);
    return { x: side === 'input' ? 0 : shapeOf(node).width, y: portTop(index) };
}

/** The colour for a number of components. The style sheet defines it for light and dark mode. */
export function typeColour(components: number | null | undefined): string {
    return `var(--type-${components && components <= 4 ? components : 'unknown'})`;
}

export function typeName(port: Port): string {
    const component = port.precision ?? 'value';
    if (port.components === null) return `${component}, number of components not known yet`;
    return port.components === 1 ? component : `${component}${port.components}`;
}
