import { add, cross, dot, identity, lookAt, multiply } from './matrices.ts';
import { normalise, perspective, scale, subtract } from './matrices.ts';
import type { Matrix, Vector } from './matrices.ts';
import type { Mesh } from './meshes.ts';

/** The position of the camera, which orbits the centre of the mesh. */
export interface Orbit {
    /** In radians; if both angles are 0, the camera looks along -z. */
    longitude: number;
    latitude: number;
    /** At 1, the mesh fills nine tenths of the image. */
    distance: number;
}

export interface Camera {
    eye: Vector;
    view: Matrix;
    viewProjection: Matrix;
}

const angle = Math.PI / 6;
const filledPart = 0.9;

export function orbitOf(mesh: Mesh): Orbit {
    const [x, y, z] = normalise(mesh.viewFrom);
    return { longitude: Math.atan2(x, z), latitude: Math.asin(y), distance: 1 };
}

/** The measurements of a mesh that the camera requires. */
export interface Extent {
    middle: Vector;
    /** Distance from the middle to the farthest vertex. */
    radius: number;
    /** Distance from the middle to the eye at which the mesh fills the first view. */
    fitting: number;
}

/** Measures a mesh, in time proportional to its vertices. */
export function measure(mesh: Mesh, aspect: number): Extent {
    const positions = mesh.streams.get('position')?.[0]?.values ?? [];
    const at = (i: number): Vector => [positions[i]!, positions[i + 1]!, positions[i + 2]!];
    let low: Vector = [Infinity, Infinity, Infinity];
    let high: Vector = [-Infinity, -Infinity, -Infinity];
    for (let i = 0; i < positions.length; i += 3) {
        const [x, y, z] = at(i);
        low = [Math.min(low[0], x), Math.min(low[1], y), Math.min(low[2], z)];
        high = [Math.max(high[0], x), Math.max(high[1], y), Math.max(high[2], z)];
    }
    const middle = scale(add(low, high), 0.5);
    const back = normalise(mesh.viewFrom);
    const right = normalise(cross([0, 1, 0], back));
    const up = cross(back, right);
    const slope = Math.tan(angle / 2);
    let fitting = 0;
    let radius = 0;
    for (let i = 0; i < positions.length; i += 3) {
        const offset = subtract(at(i), middle);
        const across = Math.max(Math.abs(dot(offset, right)) / aspect, Math.abs(dot(offset, up)));
        fitting = Math.max(fitting, dot(offset, back) + across / (slope * filledPart));
        radius = Math.max(radius, Math.hypot(...offset));
    }
    return { middle, radius, fitting: fitting > 0 ? fitting : 1 };
}

/** The distance does not depend on the angle, so the mesh does not change its size when it is rotated. */
export function placeCamera({ middle, radius, fitting }: Extent, orbit: Orbit, aspect: number): Camera {
    const around = Math.cos(orbit.latitude);
    const back: Vector = [
        around * Math.sin(orbit.longitude),
        Math.sin(orbit.latitude),
        around * Math.cos(orbit.longitude),
    ];
    const distance = fitting * orbit.distance;
    const eye = add(middle, scale(back, distance));
    const projection = perspective(angle, aspect, 0.05 * distance, distance + 4 * radius);
    const view = lookAt(eye, middle, [0, 1, 0]);
    return { eye, view, viewProjection: multiply(projection, view) };
}

export function turn(orbit: Orbit, x: number, y: number): Orbit {
    const limit = Math.PI / 2 - 0.01;
    const latitude = Math.min(limit, Math.max(-limit, orbit.latitude + y));
    return { ...orbit, longitude: orbit.longitude + x, latitude };
}

const keyLight: Vector = [-0.5, 0.6, 0.65];
const rimLight: Vector = [0.8, 0.5, -0.7];
const noLight: Vector = [0, 1, 0];

/** The values that the environment requires, by name. If the light is 0, they are those of `mox preview`. */
export function sceneValues(camera: Camera, light: number, seconds: number): Map<string, readonly number[]> {
    const turn = ([x, y, z]: Vector): Vector => [
        Math.cos(light) * x + Math.sin(light) * z,
        y,
        Math.cos(light) * z - Math.sin(light) * x,
    ];
    const directionTo = (place: Vector) => turn(normalise(place));
    const isFar = 0; // the fourth component of a directional light
    const lights = [keyLight, rimLight, noLight, noLight];
    const framesPerSecond = 30;
    return new Map<string, readonly number[]>([
        ['world', identity],
        ['worldInverseTranspose', identity],
        ['worldViewProjection', camera.viewProjection],
        ['worldToView', camera.view],
        ['eyePosition', camera.eye],
        ['lightDirection', directionTo(keyLight)],
        ['lightColour', [0.85, 0.82, 0.76]],
        ['skyColour', [0.22, 0.26, 0.34]],
        ['groundColour', [0.09, 0.08, 0.07]],
        ['lightPlaces', lights.flatMap((place) => [...directionTo(place), isFar])],
        ['lightColours', [0.85, 0.82, 0.76, 0.5, 0.55, 0.65, 0, 0, 0, 0, 0, 0]],
        ['lightLevels', [4]],
        ['toneMapping', [1]],
        ['frame', [seconds * framesPerSecond]],
        ['time', [seconds]],
    ]);
}
