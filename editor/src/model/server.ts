import type { Connection, Reply } from './connection.ts';
import type { Answer } from './messages.ts';
import type { Store } from './store.ts';

/** The server, also after a lost connection has been replaced. */
export class Server {
    connection!: Connection;
    /** The number of changes that are sent but not confirmed yet. */
    unconfirmed = 0;

    constructor(private readonly store: Store) {}

    /** Sends a request and, if it fails, shows the error. */
    async ask(message: object, bytes?: Uint8Array): Promise<Reply> {
        const reply = await this.connection.request(message, bytes);
        if (reply.answer.error) this.store.say(describeError(reply.answer));
        return reply;
    }
}

export function describeError(answer: Answer): string {
    const { error } = answer;
    if (!error) return '';
    const place = [error.node ? `"${error.node}"` : error.file, error.port && `port "${error.port}"`];
    return [...place, error.message].filter(Boolean).join(': ');
}
