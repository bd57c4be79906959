import type { MeshJson } from '../model/messages.ts';
import { add, cross, scale, type Vector } from './matrices.ts';

/** The meshes of `mox preview`, with the streams that materials read. */

export interface Mesh {
    name: string;
    /** Streams by type. There may be several sets of texture coordinates and colours. */
    streams: ReadonlyMap<string, readonly Stream[]>;
    indices: Uint32Array;
    /** Direction from which the mesh is viewed initially. */
    viewFrom: Vector;
}

export interface Stream {
    components: number;
    values: Float32Array;
}

interface Vertex {
    position: Vector;
    normal: Vector;
    tangent: Vector;
    binormal: Vector;
}

class MeshBuilder {
    readonly positions: number[] = [];
    readonly normals: number[] = [];
    readonly tangents: number[] = [];
    readonly binormals: number[] = [];
    readonly uvs: number[] = [];
    readonly colours: number[] = [];
    readonly indices: number[] = [];

    finish(name: string, viewFrom: Vector): Mesh {
        const set = (components: number, values: number[]) => [
            { components, values: new Float32Array(values) },
        ];
        return {
            name,
            streams: new Map([
                ['position', set(3, this.positions)],
                ['normal', set(3, this.normals)],
                ['tangent', set(3, this.tangents)],
                ['binormal', set(3, this.binormals)],
                ['uv', set(2, this.uvs)],
                ['colour', set(4, this.colours)],
            ]),
            indices: new Uint32Array(this.indices),
            viewFrom,
        };
    }
}

/** Adds a grid of quads for u and v from 0 to 1. */
function addSheet(
    mesh: MeshBuilder,
    columns: number,
    rows: number,
    at: (u: number, v: number) => Vertex,
): void {
    const first = mesh.positions.length / 3;
    for (let row = 0; row <= rows; ++row) {
        for (let column = 0; column <= columns; ++column) {
            const u = column / columns;
            const v = row / rows;
            const vertex = at(u, v);
            mesh.positions.push(...vertex.position);
            mesh.normals.push(...vertex.normal);
            mesh.tangents.push(...vertex.tangent);
            mesh.binormals.push(...vertex.binormal);
            mesh.uvs.push(u, v);
            mesh.colours.push(u, v, 0, 1);
        }
    }
    for (let row = 0; row < rows; ++row) {
        for (let column = 0; column < columns; ++column) {
            const low = first + row * (columns + 1) + column;
            const high = low + columns + 1;
            mesh.indices.push(low, low + 1, high + 1, low, high + 1, high);
        }
    }
}

function addSquare(mesh: MeshBuilder, quads: number, right: Vector, up: Vector, distance: number): void {
    const normal = cross(right, up);
    addSheet(mesh, quads, quads, (u, v) => ({
        position: add(scale(normal, distance), add(scale(right, 2 * u - 1), scale(up, 2 * v - 1))),
        normal,
        tangent: right,
        binormal: up,
    }));
}

export function makeSphere(): Mesh {
    const mesh = new MeshBuilder();
    addSheet(mesh, 128, 64, (u, v) => {
        const longitude = (2 * u - 1) * Math.PI;
        const latitude = (v - 0.5) * Math.PI;
        const outward: Vector = [Math.sin(longitude), 0, Math.cos(longitude)];
        const tangent: Vector = [Math.cos(longitude), 0, -Math.sin(longitude)];
        const normal = add(scale(outward, Math.cos(latitude)), [0, Math.sin(latitude), 0]);
        return { position: normal, normal, tangent, binormal: cross(normal, tangent) };
    });
    return mesh.finish('sphere', [0, 0, 1]);
}

export function makePlane(): Mesh {
    const mesh = new MeshBuilder();
    addSquare(mesh, 64, [1, 0, 0], [0, 1, 0], 0);
    return mesh.finish('plane', [0, 0, 1]);
}

export function makeCube(): Mesh {
    const mesh = new MeshBuilder();
    addSquare(mesh, 16, [1, 0, 0], [0, 1, 0], 1);
    addSquare(mesh, 16, [-1, 0, 0], [0, 1, 0], 1);
    addSquare(mesh, 16, [0, 0, -1], [0, 1, 0], 1);
    addSquare(mesh, 16, [0, 0, 1], [0, 1, 0], 1);
    addSquare(mesh, 16, [1, 0, 0], [0, 0, -1], 1);
    addSquare(mesh, 16, [1, 0, 0], [0, 0, 1], 1);
    return mesh.finish('cube', [0.7, 0.6, 1]);
}

export const meshMakers: Readonly<Record<string, () => Mesh>> = {
    sphere: makeSphere,
    plane: makePlane,
    cube: makeCube,
};

/** Creates a mesh from the answer of the server. */
export function meshFrom(described: MeshJson, bytes: Uint8Array): Mesh {
    const streams = new Map<string, Stream[]>();
    const data = bytes.slice().buffer; // typed arrays require aligned offsets
    const size = 4;
    let from = 0;
    for (const { stream, components } of described.streams) {
        const values = new Float32Array(data, from, described.vertices * components);
        streams.set(stream, [...(streams.get(stream) ?? []), { components, values }]);
        from += size * values.length;
    }
    const indices = new Uint32Array(data, from, described.indices);
    return { name: described.name, streams, indices, viewFrom: described.viewFrom };
}

/** The number at the end of a name such as "uv1", or 0. */
function numberAtEnd(name: string): number {
    return Number(/\d*$/.exec(name)![0]);
}

/**
 * Finds a stream by type; undefined if the mesh has no stream of this type.
 * @param name if there are several sets, the number at its end selects one
 */
export function streamOf(mesh: Mesh, type: string, name = ''): Stream | undefined {
    const sets = mesh.streams.get(type) ?? [];
    return sets[numberAtEnd(name)] ?? sets[0];
}

/** Applies modifiers such as "oneminus|v" or "negate" to the values of a stream. */
export function applyModifiers(stream: Stream, modifiers: string): Stream {
    const values = stream.values.slice();
    for (const modifier of modifiers.split(' ').filter((word) => word !== '')) {
        const [operation, letters = 'xyzw'.slice(0, stream.components)] = modifier.split('|');
        const offset = operation === 'oneminus' ? 1 : 0;
        for (const letter of letters) {
            const component = Math.max(...['xyzw', 'uv', 'rgba'].map((set) => set.indexOf(letter)));
            if (component < 0) continue;
            for (let i = component; i < values.length; i += stream.components)
                values[i] = offset - values[i]!;
        }
    }
    return { components: stream.components, values };
}
