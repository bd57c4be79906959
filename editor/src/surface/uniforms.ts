/** Fills uniform blocks, using the layout in the reflection. */

export interface Member {
    name: string;
    /** Its name in the environment; missing for a parameter of the material. */
    environment?: string;
    type: string;
    offset: number;
    size: number;
    arrayStride?: number;
    matrixStride?: number;
    /** The stages that read it; may be empty. */
    stages: string[];
}

export interface Block {
    name: string;
    /** The descriptor set; for targets without sets, the number of the block. */
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
    /** By frequency of change: "frame", "material" and "object". */
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

/** Parses a type such as "float4x4", "half3" or "float[8]". */
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

/** Writes values to a block. If there are too few, the last value is repeated. */
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

/** The bytes of a block. Members without a value are 0; those that a stage reads are listed in `missing`. */
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
