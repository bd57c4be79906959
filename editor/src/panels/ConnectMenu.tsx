import { useMemo, useState } from 'react';
import { partnersOf, type PortAt } from '../model/connect.ts';
import { nodeById } from '../model/document.ts';
import type { NodeState, Port } from '../model/messages.ts';
import { titleOf, typeName } from '../model/shape.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';
import type { Lighting } from './Inspector.tsx';
import { Palette, type Choice } from './Palette.tsx';

interface PortChoice extends Choice {
    at: PortAt;
}

function portChoice(node: NodeState, port: Port, side: 'input' | 'output'): PortChoice {
    return {
        key: `${node.record.id}.${side}.${port.name}`,
        label: `${titleOf(node)}: ${port.label}`,
        detail: `${side} of ${node.record.id}, ${typeName(port)}${port.connected ? ', connected' : ''}`,
        at: { node: node.record.id, port: port.name, side, components: port.components },
    };
}

/** Connects a node without a mouse: the user chooses its port and then the port at the other end. */
export function ConnectMenu({ node, onClose, light }: { node: NodeState; onClose: () => void } & Lighting) {
    const editor = useEditor();
    const document = useSnapshot((all) => all.document);
    const catalogue = useSnapshot((all) => all.catalogue);
    const [from, setFrom] = useState<PortAt | null>(null);
    const choices = useMemo((): PortChoice[] => {
        if (!from)
            return [
                ...(node.outputs ?? []).map((port) => portChoice(node, port, 'output')),
                ...(node.inputs ?? []).map((port) => portChoice(node, port, 'input')),
            ];
        return partnersOf(document, catalogue, from).map((at) => {
            const other = nodeById(document, at.node)!;
            const ports = (at.side === 'input' ? other.inputs : other.outputs) ?? [];
            return portChoice(
                other,
                ports.find((port) => port.name === at.port)!,
                at.side,
            );
        });
    }, [catalogue, document, from, node]);
    const close = () => {
        light([]);
        onClose();
    };
    return (
        <Palette
            key={from ? 'to' : 'from'}
            title={from ? `Connect ${from.port} to` : `Choose a port of ${titleOf(node)} to connect`}
            choices={choices}
            onPointTo={(choice) => light(from && choice ? [choice.at.node] : [])}
            onClose={close}
            onPick={({ at }) => {
                if (!from) {
                    setFrom(at);
                    return;
                }
                const [tail, head] = from.side === 'output' ? [from, at] : [at, from];
                close();
                editor.graph.connect({
                    tail: tail.node,
                    tailPort: tail.port,
                    head: head.node,
                    headPort: head.port,
                });
            }}
        />
    );
}
