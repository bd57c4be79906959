import { edgesAt, positionOf, type DocumentState } from './document.ts';
import type { NodeState } from './messages.ts';
import { shapeOf } from './shape.ts';

/** Navigation in the graph by keyboard. */

export type Direction = 'ArrowLeft' | 'ArrowRight' | 'ArrowUp' | 'ArrowDown';

const ahead: Record<Direction, readonly [number, number]> = {
    ArrowLeft: [-1, 0],
    ArrowRight: [1, 0],
    ArrowUp: [0, -1],
    ArrowDown: [0, 1],
};

export function isDirection(key: string): key is Direction {
    return key in ahead;
}

function middleOf(node: NodeState): readonly [number, number] {
    const { x, y } = positionOf(node);
    const { width, height } = shapeOf(node);
    return [x + width / 2, y + height / 2];
}

/** The nearest node in a direction. Distances to the side have a greater weight. */
export function neighbour(
    document: DocumentState,
    from: NodeState,
    direction: Direction,
): NodeState | undefined {
    const [aheadX, aheadY] = ahead[direction];
    const [x, y] = middleOf(from);
    let nearest: NodeState | undefined;
    let least = Infinity;
    for (const node of document.nodes.values()) {
        if (node === from) continue;
        const [atX, atY] = middleOf(node);
        const forward = (atX - x) * aheadX + (atY - y) * aheadY;
        const sideways = Math.abs((atX - x) * aheadY) + Math.abs((atY - y) * aheadX);
        if (forward <= 0 || sideways > 3 * forward) continue;
        const distance = forward + 2 * sideways;
        if (distance < least) {
            least = distance;
            nearest = node;
        }
    }
    return nearest;
}

/** The node at the other end of the first edge: an outgoing edge for right and down, an incoming one for left and up. */
export function alongEdge(
    document: DocumentState,
    from: NodeState,
    direction: Direction,
): NodeState | undefined {
    const isForward = direction === 'ArrowRight' || direction === 'ArrowDown';
    const edges = edgesAt(document, isForward ? 'tail' : 'head').get(from.record.id) ?? [];
    const ports = (isForward ? from.outputs : from.inputs) ?? [];
    const order = (name: string) => ports.findIndex((port) => port.name === name);
    const sorted = [...edges].sort((a, b) =>
        isForward
            ? order(a.record.tailPort) - order(b.record.tailPort)
            : order(a.record.headPort) - order(b.record.headPort),
    );
    const edge = sorted[0]?.record;
    const number = edge && document.numbers.get(isForward ? edge.head : edge.tail);
    return number === undefined ? undefined : document.nodes.get(number);
}
