import { Handle, Position, type Node, type NodeProps } from '@xyflow/react';
import { memo, useEffect, useRef, type ReactNode } from 'react';
import type { NodeState, Port, Problem } from '../model/messages.ts';
import { portTop, titleOf, typeColour, typeName } from '../model/shape.ts';
import { useEditor } from '../useEditor.ts';

export type CardNode = Node<
    {
        node: NodeState;
        problems: readonly Problem[];
        pinned: string | null;
        isLit: boolean;
        thumbnail: ImageData | null;
        /** How the node differs from the file on disk. */
        mark: 'added' | 'changed' | null;
    },
    'card'
>;

const markWords = { added: 'not in the file', changed: 'differs from the file' };

function rgb(colour: number[] | undefined): string {
    const [r, g, b] = (colour ?? [0.4, 0.4, 0.4]).map((value) => Math.round(255 * value));
    return `rgb(${r} ${g} ${b})`;
}

function ProblemBadge({ problems }: { problems: readonly Problem[] }) {
    if (problems.length === 0) return null;
    const isError = problems.some(({ severity }) => severity === 'error');
    const counted = problems.length === 1 ? 'Problem' : `${problems.length} problems`;
    return (
        <span
            className={`badge ${isError ? 'error' : 'warning'}`}
            title={problems.map((problem) => problem.message).join('\n')}
            role="img"
            aria-label={`${counted}: ${problems[0]!.message}`}
        >
            {isError ? '!' : '▲'}
            {problems.length}
        </span>
    );
}

function PortRow({
    port,
    index,
    side,
    problems,
    children,
}: {
    port: Port;
    index: number;
    side: 'input' | 'output';
    /** All problems of the node. */
    problems: readonly Problem[];
    children?: ReactNode;
}) {
    const shape = port.components && port.components <= 4 ? port.components : 'unknown';
    const name = `${side} ${port.label}, ${typeName(port)}`;
    return (
        <>
            <Handle
                id={port.name}
                type={side === 'input' ? 'target' : 'source'}
                position={side === 'input' ? Position.Left : Position.Right}
                className={`port shape-${shape} ${port.precision ?? ''} ${port.connected ? 'full' : 'hollow'} ${port.conflict ? 'conflict' : ''}`}
                style={{ top: portTop(index), ['--port' as string]: typeColour(port.components) }}
                title={`${port.name}: ${typeName(port)}${port.conflict ? '; the component counts do not match' : ''}`}
                role="img"
                aria-label={name}
            />
            <span className={`port-label ${side}`} style={{ top: portTop(index) }}>
                {children}
                {port.label}
                <ProblemBadge problems={problems.filter((problem) => problem.port === port.name)} />
            </span>
        </>
    );
}

function PinButton({ node, port, isOn }: { node: string; port: Port; isOn: boolean }) {
    const editor = useEditor();
    return (
        <button
            className={`pin nodrag ${isOn ? 'on' : ''}`}
            aria-pressed={isOn}
            aria-label={`Pin the image of ${port.label}`}
            title="Pin the image of this output"
            tabIndex={-1}
            onClick={(event) => {
                event.stopPropagation();
                editor.pinned.pin(isOn ? null : { node, port: port.name });
            }}
        >
            ◉
        </button>
    );
}

function Thumbnail({ picture }: { picture: ImageData }) {
    const canvas = useRef<HTMLCanvasElement>(null);
    useEffect(() => canvas.current!.getContext('2d')!.putImageData(picture, 0, 0), [picture]);
    return (
        <canvas
            ref={canvas}
            className="thumbnail"
            width={picture.width}
            height={picture.height}
            aria-hidden="true"
        />
    );
}

/** A node at a zoom at which its text is readable. */
export const NodeCard = memo(function NodeCard({ data, selected }: NodeProps<CardNode>) {
    const { node, problems, pinned, isLit, thumbnail, mark } = data;
    const id = node.record.id;
    return (
        <div
            className={`card ${selected ? 'selected' : ''} ${isLit ? 'lit' : ''} ${node.placeholder ? 'lost' : ''} ${mark ?? ''}`}
            role="group"
            aria-label={`${titleOf(node)}, node ${id}`}
        >
            <div
                className="card-header"
                style={{ ['--class' as string]: rgb(node.background), color: rgb(node.foreground) }}
            >
                {thumbnail && <Thumbnail picture={thumbnail} />}
                <span className="card-title">{titleOf(node)}</span>
                <span className="card-id">{node.placeholder ? `${id}, was ${node.record.type}` : id}</span>
            </div>
            {mark && (
                <span className="badge mark" role="img" aria-label={markWords[mark]} title={markWords[mark]}>
                    {mark === 'added' ? '+' : '≠'}
                </span>
            )}
            <ProblemBadge problems={problems} />
            {node.inputs?.map((port, i) => (
                <PortRow key={port.name} port={port} index={i} side="input" problems={problems} />
            ))}
            {node.outputs?.map((port, i) => (
                <PortRow key={port.name} port={port} index={i} side="output" problems={problems}>
                    <PinButton node={id} port={port} isOn={pinned === port.name} />
                </PortRow>
            ))}
        </div>
    );
});
