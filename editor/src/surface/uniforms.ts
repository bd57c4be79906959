/** Uniform blocks from what the reflection says: which value lies where. */

export interface Member {
    name: string;
    /** What the environment calls it; missing for a parameter of the material. */
    environment?: string;
    type: string;
    offset: number;
    size: number;
    arrayStride?: number;
    matrixStride?: number;
    /** Which stages read it; a block may hold what none reads. */
    stages: string[];
}

export interface Block {
    name: string;
    /** The number of the block where a target has no sets. */
    set: number;
    size: number;
    members: Member[];
}

export interface Stage {
    samplers: { name: string; environment?: string; type: string; unit: number }[];
    inputs: { name: string; environment?: string; type: string; location: number }[];
}

export interface StageTarget {
    uniformBlocks?: Record<string, { name: string }>;
    samplers?: Record<string, { name: string }>;
}

export interface Reflection {
    version: number;
    /** By how often they change: "frame", "material", "object". */
    uniformBlocks: Record<string, Block>;
    stages: { vertex: Stage; fragment: Stage };
    targets: Record<string, { vertex: StageTarget; fragment: StageTarget }>;
}

interface Type {
    isInteger: boolean;
    columns: number;
    rows: number;
    length: number;
}

/** Reads a type such as "float4x4", "half3" or "float[8]". */
export function readType(text: string): Type {
    const match = /^([a-z]+?)(\d)?(?:x(\d))?(?:\[(\d+)\])?$/.exec(text);
    if (!match) throw new Error(`The reflection contains an unknown type: ${text}`);
    const [, word, first, second, length] = match;
    const isMatrix = second !== undefined;
    return {
        isInteger: word === 'int' || word === 'bool',
        columns: isMatrix ? Number(second) : 1,
        rows: Number(first ?? 1),
        length: Number(length ?? 1),
    };
}

/** Writes values into a block; the last value serves where there is no further one. */
export function fillMember(member: Member, values: readonly number[], block: DataView): void {
    const type = readType(member.type);
    let next = 0;
    for (let element = 0; element < type.length; ++element) {
        for (let column = 0; column < type.columns; ++column) {
            for (let row = 0; row < type.rows; ++row) {
                const value = values[Math.min(next++, values.length - 1)] ?? 0;
                const at =
                    member.offset +
                    element * (member.arrayStride ?? 0) +
                    column * (member.matrixStride ?? 0) +
                    4 * row;
                if (type.isInteger) block.setInt32(at, Math.trunc(value), true);
                else block.setFloat32(at, value, true);
            }
        }
    }
}

/** The bytes of a block. What no value is known for stays 0 and, if a stage reads it, is named in `missing`. */
export function fillBlock(
    block: Block,
    valueOf: (member: Member) => readonly number[] | undefined,
): { bytes: Uint8Array; missing: string[] } {
    const bytes = new Uint8Array(block.size);
    const view = new DataView(bytes.buffer);
    const missing: string[] = [];
    for (const member of block.members) {
        const values = valueOf(member);
        if (values) fillMember(member, values, view);
        else if (member.stages.length > 0) missing.push(member.name);
    }
    return { bytes, missing };
}
