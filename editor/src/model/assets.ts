import type { Reply } from './connection.ts';
import type { Server } from './server.ts';
import type { Store } from './store.ts';

/** The mip levels of a texture, the largest first. */
export interface TextureLevels {
    /** Whether the texels are 16-bit floats instead of bytes. */
    isHalf: boolean;
    levels: { width: number; height: number; layers: number; texels: Uint8Array | Uint16Array }[];
}

/** Requests the textures and meshes of the preview. */
export class Assets {
    constructor(
        private readonly store: Store,
        private readonly server: Server,
    ) {}

    /** @param sampler the type of the sampler that reads the texture */
    async texture(tag: string, sampler: string): Promise<TextureLevels | undefined> {
        const reply = await this.server.connection.request({ do: 'texture', tag, sampler });
        const [problem] = reply.answer.problems ?? [];
        if (problem) this.store.say(problem.message);
        return levelsOf(reply);
    }

    /** Loads a mesh file, or the mesh of the host if no file is given. */
    async mesh(name?: string, bytes?: Uint8Array): Promise<Reply> {
        const reply = await this.server.ask({ do: 'mesh', ...(name ? { name } : {}) }, bytes);
        if (!reply.answer.error) this.store.say(`The material is shown on ${reply.answer.mesh?.name}.`);
        return reply;
    }
}

function levelsOf({ answer, bytes }: Reply): TextureLevels | undefined {
    if (!answer.texture || !bytes) return undefined;
    const isHalf = answer.texture.format === 'half';
    const channels = 4;
    let from = 0;
    const levels = answer.texture.levels.map(({ width, height, layers = 1 }) => {
        const count = channels * width * height * layers;
        const part = bytes.slice(from, from + (isHalf ? 2 * count : count));
        from += part.length;
        return { width, height, layers, texels: isHalf ? new Uint16Array(part.buffer) : part };
    });
    return { isHalf, levels };
}
