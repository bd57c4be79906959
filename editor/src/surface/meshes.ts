import { add, cross, scale, type Vector } from './matrices.ts';

/** Meshes with the streams that materials read; the same as those of `mox preview`. */

export interface Mesh {
    positions: number[];
    normals: number[];
    tangents: number[];
    binormals: number[];
    uvs: number[];
    colours: number[];
    indices: number[];
    /** From where the picture shows it at first. */
    viewFrom: Vector;
}

interface Vertex {
    position: Vector;
    normal: Vector;
    tangent: Vector;
    binormal: Vector;
}

function emptyMesh(viewFrom: Vector): Mesh {
    return {
        positions: [],
        normals: [],
        tangents: [],
        binormals: [],
        uvs: [],
        colours: [],
        indices: [],
        viewFrom,
    };
}

/** Adds a sheet of quads over the square of u and v from 0 to 1. */
function addSheet(mesh: Mesh, columns: number, rows: number, at: (u: number, v: number) => Vertex): void {
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

function addSquare(mesh: Mesh, quads: number, right: Vector, up: Vector, distance: number): void {
    const normal = cross(right, up);
    addSheet(mesh, quads, quads, (u, v) => ({
        position: add(scale(normal, distance), add(scale(right, 2 * u - 1), scale(up, 2 * v - 1))),
        normal,
        tangent: right,
        binormal: up,
    }));
}

export function makeSphere(): Mesh {
    const mesh = emptyMesh([0, 0, 1]);
    addSheet(mesh, 128, 64, (u, v) => {
        const longitude = (2 * u - 1) * Math.PI;
        const latitude = (v - 0.5) * Math.PI;
        const outward: Vector = [Math.sin(longitude), 0, Math.cos(longitude)];
        const tangent: Vector = [Math.cos(longitude), 0, -Math.sin(longitude)];
        const normal = add(scale(outward, Math.cos(latitude)), [0, Math.sin(latitude), 0]);
        return { position: normal, normal, tangent, binormal: cross(normal, tangent) };
    });
    return mesh;
}

export function makePlane(): Mesh {
    const mesh = emptyMesh([0, 0, 1]);
    addSquare(mesh, 64, [1, 0, 0], [0, 1, 0], 0);
    return mesh;
}

export function makeCube(): Mesh {
    const mesh = emptyMesh([0.7, 0.6, 1]);
    addSquare(mesh, 16, [1, 0, 0], [0, 1, 0], 1);
    addSquare(mesh, 16, [-1, 0, 0], [0, 1, 0], 1);
    addSquare(mesh, 16, [0, 0, -1], [0, 1, 0], 1);
    addSquare(mesh, 16, [0, 0, 1], [0, 1, 0], 1);
    addSquare(mesh, 16, [1, 0, 0], [0, 0, -1], 1);
    addSquare(mesh, 16, [1, 0, 0], [0, 0, 1], 1);
    return mesh;
}

export const meshMakers: Readonly<Record<string, () => Mesh>> = {
    sphere: makeSphere,
    plane: makePlane,
    cube: makeCube,
};

export interface Stream {
    components: number;
    values: Float32Array;
}

/** A stream by its type; nothing if the mesh has none such. */
export function streamOf(mesh: Mesh, type: string): Stream | undefined {
    switch (type) {
        case 'position':
            return { components: 3, values: new Float32Array(mesh.positions) };
        case 'normal':
            return { components: 3, values: new Float32Array(mesh.normals) };
        case 'tangent':
            return { components: 3, values: new Float32Array(mesh.tangents) };
        case 'binormal':
            return { components: 3, values: new Float32Array(mesh.binormals) };
        case 'uv':
            return { components: 2, values: new Float32Array(mesh.uvs) };
        case 'colour':
            return { components: 4, values: new Float32Array(mesh.colours) };
        default:
            return undefined;
    }
}

/** Changes values as a text such as "oneminus|v" or "negate" says. */
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
