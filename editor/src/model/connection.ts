import type { Answer } from './messages.ts';

export interface Reply {
    answer: Answer;
    /** Of an image, a texture or a mesh. */
    bytes?: Uint8Array;
}

export interface Listener {
    onNotice(notice: Answer): void;
    /** The connection is closed; messages without an answer are lost. */
    onClosed(unanswered: object[], code: number): void;
}

interface Pending {
    message: object;
    resolve: (reply: Reply) => void;
}

/** The messages of one window. Answers are matched to messages by their ids. */
export class Connection {
    private readonly pending = new Map<number, Pending>();
    private next = 1;
    private isOpen = true;

    constructor(
        private readonly socket: WebSocket,
        private readonly listener: Listener,
    ) {
        socket.binaryType = 'arraybuffer';
        socket.addEventListener('message', (event) => this.receive(event.data));
        socket.addEventListener('close', (event) => this.close(event.code));
    }

    /**
     * Never rejects: the answer contains the error.
     * @param bytes binary data to send with the message, such as a texture
     */
    request(message: object, bytes?: Uint8Array): Promise<Reply> {
        const id = this.next++;
        return new Promise((resolve) => {
            this.pending.set(id, { message, resolve });
            const text = JSON.stringify({ id, ...message });
            if (this.isOpen) this.socket.send(bytes ? joinBytes(text, bytes) : text);
        });
    }

    private receive(data: string | ArrayBuffer): void {
        if (typeof data !== 'string') {
            const { json, bytes } = splitBytes(data);
            this.dispatch(json, bytes);
        } else {
            this.dispatch(JSON.parse(data) as Answer);
        }
    }

    private dispatch(answer: Answer, bytes?: Uint8Array): void {
        if (typeof answer.id !== 'number') {
            this.listener.onNotice(answer);
            return;
        }
        const pending = this.pending.get(answer.id);
        this.pending.delete(answer.id);
        pending?.resolve(bytes ? { answer, bytes } : { answer });
    }

    private close(code: number): void {
        if (!this.isOpen) return;
        this.isOpen = false;
        const unanswered = [...this.pending.values()].map((entry) => entry.message);
        this.listener.onClosed(unanswered, code);
    }
}

/** Splits a binary message: the length of the JSON in four bytes, the JSON, and the binary data. */
export function splitBytes(data: ArrayBuffer): { json: Answer; bytes: Uint8Array } {
    const length = new DataView(data).getUint32(0, true);
    const json = JSON.parse(new TextDecoder().decode(new Uint8Array(data, 4, length))) as Answer;
    return { json, bytes: new Uint8Array(data, 4 + length) };
}

export function joinBytes(text: string, bytes: Uint8Array): ArrayBuffer {
    const json = new TextEncoder().encode(text);
    const joined = new Uint8Array(4 + json.length + bytes.length);
    new DataView(joined.buffer).setUint32(0, json.length, true);
    joined.set(json, 4);
    joined.set(bytes, 4 + json.length);
    return joined.buffer;
}
