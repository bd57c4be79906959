import { useConnection, type Connection, type FinalConnectionState } from '@xyflow/react';
import { componentsAt, whyNot, type PortAt } from '../model/connect.ts';
import type { EdgeRecord } from '../model/messages.ts';
import type { Snapshot } from '../model/store.ts';
import { useEditor } from '../useEditor.ts';
import type { Pointer } from './pointer.ts';

/** Checks the edge that is being dragged, and converts connections of React Flow to edges of the document. */

export function recordOf({ document }: Snapshot, connection: Connection): EdgeRecord | undefined {
    const tail = document.nodes.get(Number(connection.source));
    const head = document.nodes.get(Number(connection.target));
    if (!tail || !head || !connection.sourceHandle || !connection.targetHandle) return undefined;
    return {
        tail: tail.record.id,
        tailPort: connection.sourceHandle,
        head: head.record.id,
        headPort: connection.targetHandle,
    };
}

export function isPossible(snapshot: Snapshot, connection: Connection): boolean {
    const record = recordOf(snapshot, connection);
    return record !== undefined && whyNot(snapshot.document, snapshot.catalogue, record) === '';
}

/** The port at which a dragged edge starts if it was not dropped on another port; otherwise undefined. */
export function looseEnd(
    { document, catalogue }: Snapshot,
    { fromHandle, toHandle, isValid }: FinalConnectionState,
): PortAt | undefined {
    if (isValid || !fromHandle?.id || (toHandle && toHandle !== fromHandle)) return undefined;
    const node = document.nodes.get(Number(fromHandle.nodeId));
    if (!node) return undefined;
    const side = fromHandle.type === 'source' ? 'output' : 'input';
    const components = componentsAt(catalogue, node, side, fromHandle.id);
    return { node: node.record.id, port: fromHandle.id, side, components };
}

/** Shows next to the pointer why the edge that is being dragged cannot be connected there. */
export function ConnectionHint({ pointer }: { pointer: Pointer }) {
    const editor = useEditor();
    const { inProgress, fromHandle, toHandle, isValid } = useConnection();
    if (!inProgress || !toHandle || isValid || toHandle === fromHandle) return null;
    const [tail, head] = fromHandle.type === 'source' ? [fromHandle, toHandle] : [toHandle, fromHandle];
    const now = editor.store.get();
    const record = recordOf(now, {
        source: tail.nodeId,
        target: head.nodeId,
        sourceHandle: tail.id ?? null,
        targetHandle: head.id ?? null,
    });
    const reason = record ? whyNot(now.document, now.catalogue, record) : '';
    if (reason === '') return null;
    return (
        <div className="hint" role="status" style={{ left: pointer.at.x + 14, top: pointer.at.y + 14 }}>
            {reason}
        </div>
    );
}
