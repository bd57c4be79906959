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
}

export interface Stage {
    uniformBlock?: { name: string; size: number; members: Member[] };
    samplers: { name: string; environment?: string; type: string; unit: number }[];
    inputs: { name: string; environment?: string; type: string; location: number }[];
}

export interface StageTarget {
    uniformBlock?: { name: string };
    samplers?: Record<string, { name: string }>;
}

export interface Reflection {
    version: number;
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
    if (!match) throw new Error(`The reflection has a type that is not known: ${text}`);
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

/** The bytes of a stage's block. What no value is known for stays 0 and is named in `missing`. */
export function fillBlock(
    stage: Stage,
    valueOf: (member: Member) => readonly number[] | undefined,
): { bytes: Uint8Array; missing: string[] } {
    const size = stage.uniformBlock?.size ?? 0;
    const bytes = new Uint8Array(Math.ceil(size / 16) * 16);
    const view = new DataView(bytes.buffer);
    const missing: string[] = [];
    for (const member of stage.uniformBlock?.members ?? []) {
        const values = valueOf(member);
        if (values) fillMember(member, values, view);
        else missing.push(member.name);
    }
    return { bytes, missing };
}
