import assert from 'node:assert/strict';
import { test } from 'node:test';
import { measure, orbitOf, placeCamera, turn } from '../src/surface/camera.ts';
import { applyModifiers, meshFrom, meshMakers, streamOf, type Mesh } from '../src/surface/meshes.ts';
import { fillBlock, readType, type Block } from '../src/surface/uniforms.ts';

test('uniforms lie where the reflection says', () => {
    const stages = ['fragment'];
    const block: Block = {
        name: 'MaterialUniforms',
        set: 1,
        size: 144,
        members: [
            { name: 'scale', type: 'half', offset: 0, size: 4, stages },
            { name: 'tint', type: 'half3', offset: 16, size: 12, stages },
            { name: 'world', type: 'float4x4', offset: 32, size: 64, matrixStride: 16, stages },
            { name: 'steps', type: 'int[2]', offset: 96, size: 32, arrayStride: 16, stages },
            { name: 'unknown', type: 'float', offset: 128, size: 4, stages },
            { name: 'unread', type: 'float', offset: 132, size: 4, stages: [] },
        ],
    };
    const world = Array.from({ length: 16 }, (_, i) => i);
    const values: Record<string, number[]> = { scale: [2], tint: [1, 0.5], world, steps: [3.7, -4.2] };
    const { bytes, missing } = fillBlock(block, (member) => values[member.name]);
    const view = new DataView(bytes.buffer);
    const floats = (at: number, count: number) =>
        Array.from({ length: count }, (_, i) => view.getFloat32(at + 4 * i, true));
    assert.equal(bytes.length, block.size);
    assert.deepEqual(floats(0, 1), [2]);
    assert.deepEqual(floats(16, 3), [1, 0.5, 0.5], 'the last value serves for the rest');
    assert.deepEqual(floats(32, 16), world);
    assert.deepEqual([view.getInt32(96, true), view.getInt32(112, true)], [3, -4]);
    assert.deepEqual(missing, ['unknown']);
    assert.throws(() => readType('what?'), /unknown type/);
});

test('meshes have whole streams and face outwards', () => {
    for (const [name, make] of Object.entries(meshMakers)) {
        const mesh = make();
        const positions = [...streamOf(mesh, 'position')!.values];
        const normals = [...streamOf(mesh, 'normal')!.values];
        const count = positions.length / 3;
        for (const type of ['position', 'normal', 'tangent', 'binormal', 'uv', 'colour']) {
            const stream = streamOf(mesh, type)!;
            assert.equal(stream.values.length / stream.components, count, `${name} ${type}`);
        }
        assert.equal(mesh.name, name);
        assert.ok(mesh.indices.every((index) => index < count));
        const at = (list: number[], i: number) => [0, 1, 2].map((k) => list[3 * i + k]!);
        for (let i = 0; i < mesh.indices.length; i += 3 * 97) {
            const [a, b, c] = [0, 1, 2].map((k) => at(positions, mesh.indices[i + k]!)) as number[][];
            const [p, q] = [b!, c!].map((corner) => corner.map((value, k) => value - a![k]!)) as number[][];
            const face = [
                p![1]! * q![2]! - p![2]! * q![1]!,
                p![2]! * q![0]! - p![0]! * q![2]!,
                p![0]! * q![1]! - p![1]! * q![0]!,
            ];
            const normal = at(normals, mesh.indices[i]!);
            assert.ok(face.reduce((sum, value, k) => sum + value * normal[k]!, 0) >= -1e-9, name);
        }
    }
    assert.equal(streamOf(meshMakers.plane!(), 'blindData'), undefined);
});

test('a mesh of the server has the streams that it names, each set by its number', () => {
    const described = {
        name: 'a.obj',
        vertices: 1,
        indices: 3,
        streams: [
            { stream: 'position', components: 3 },
            { stream: 'uv', components: 2 },
            { stream: 'uv', components: 2 },
        ],
        viewFrom: [0, 0, 1] as [number, number, number],
    };
    const data = new Uint8Array(1 + 40);
    data.set(new Uint8Array(new Float32Array([9, 8, 7, 1, 2, 3, 4]).buffer), 1);
    const mesh = meshFrom(described, data.subarray(1)); // unaligned, as in messages
    const uv = (name: string) => [...streamOf(mesh, 'uv', name)!.values];
    assert.deepEqual([uv('uv0'), uv('map1'), uv('uv7'), uv('')].flat(), [1, 2, 3, 4, 1, 2, 1, 2]);
    assert.deepEqual([mesh.indices.length, streamOf(mesh, 'normal')], [3, undefined]);
    const far: Mesh = { ...meshMakers.cube!(), streams: mesh.streams };
    assert.deepEqual(measure(far, 1).middle, [9, 8, 7], 'the camera looks at the middle');
});

test('modifiers change the components that they name', () => {
    const stream = { components: 2, values: new Float32Array([0.25, 0.25, 1, 0]) };
    assert.deepEqual([...applyModifiers(stream, 'oneminus|v').values], [0.25, 0.75, 1, 1]);
    assert.deepEqual([...applyModifiers(stream, 'negate').values], [-0.25, -0.25, -1, 0]);
    assert.deepEqual([...stream.values], [0.25, 0.25, 1, 0]);
});

test('the mesh fills nine tenths of the first view, and no turn passes the poles', () => {
    for (const make of Object.values(meshMakers)) {
        const mesh = make();
        const positions = streamOf(mesh, 'position')!.values;
        const { viewProjection: m } = placeCamera(measure(mesh, 1), orbitOf(mesh), 1);
        let farthest = 0;
        for (let i = 0; i < positions.length; i += 3) {
            const [x, y, z] = [positions[i]!, positions[i + 1]!, positions[i + 2]!];
            const row = (r: number) => m[r]! * x + m[4 + r]! * y + m[8 + r]! * z + m[12 + r]!;
            farthest = Math.max(farthest, Math.abs(row(0) / row(3)), Math.abs(row(1) / row(3)));
            assert.ok(Math.abs(row(2) / row(3)) <= 1);
        }
        assert.ok(Math.abs(farthest - 0.9) < 0.02, String(farthest));
    }
    assert.ok(turn({ longitude: 0, latitude: 0, distance: 1 }, 0, 9).latitude < Math.PI / 2);
});
