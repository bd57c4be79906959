import { cross, dot, identity, lookAt, multiply, normalise, perspective, scale } from './matrices.ts';
import type { Matrix, Vector } from './matrices.ts';
import type { Mesh } from './meshes.ts';

/** From where the picture is taken, around the middle of the mesh. */
export interface Orbit {
    /** Radians; 0 and 0 look along -z. */
    longitude: number;
    latitude: number;
    /** 1 is a mesh that fills nine tenths of the picture. */
    distance: number;
}

export interface Camera {
    eye: Vector;
    viewProjection: Matrix;
}

const angle = Math.PI / 6;
const filledPart = 0.9;

export function orbitOf(mesh: Mesh): Orbit {
    const [x, y, z] = normalise(mesh.viewFrom);
    return { longitude: Math.atan2(x, z), latitude: Math.asin(y), distance: 1 };
}

/** The longest way of a vertex from the origin, around which all meshes here lie. */
function fittingDistance(mesh: Mesh, back: Vector, aspect: number): number {
    const right = normalise(cross([0, 1, 0], back));
    const up = cross(back, right);
    const slope = Math.tan(angle / 2);
    let distance = 0;
    for (let i = 0; i < mesh.positions.length; i += 3) {
        const at: Vector = [mesh.positions[i]!, mesh.positions[i + 1]!, mesh.positions[i + 2]!];
        const across = Math.max(Math.abs(dot(at, right)) / aspect, Math.abs(dot(at, up)));
        distance = Math.max(distance, dot(at, back) + across / (slope * filledPart));
    }
    return distance;
}

export function placeCamera(mesh: Mesh, orbit: Orbit, aspect: number): Camera {
    // The mesh keeps its size when it is turned, so the first view decides.
    const fitting = fittingDistance(mesh, normalise(mesh.viewFrom), aspect);
    const around = Math.cos(orbit.latitude);
    const back: Vector = [
        around * Math.sin(orbit.longitude),
        Math.sin(orbit.latitude),
        around * Math.cos(orbit.longitude),
    ];
    const distance = fitting * orbit.distance;
    const eye = scale(back, distance);
    const projection = perspective(angle, aspect, 0.05 * distance, distance + 8);
    return { eye, viewProjection: multiply(projection, lookAt(eye, [0, 0, 0], [0, 1, 0])) };
}

export function turn(orbit: Orbit, x: number, y: number): Orbit {
    const limit = Math.PI / 2 - 0.01;
    const latitude = Math.min(limit, Math.max(-limit, orbit.latitude + y));
    return { ...orbit, longitude: orbit.longitude + x, latitude };
}

const keyLight: Vector = [-0.5, 0.6, 0.65];
const rimLight: Vector = [0.8, 0.5, -0.7];
const noLight: Vector = [0, 1, 0];

/** What the environment of a material reads, by its names; as the previews have it while the light is 0. */
export function sceneValues(camera: Camera, light: number, seconds: number): Map<string, readonly number[]> {
    const turn = ([x, y, z]: Vector): Vector => [
        Math.cos(light) * x + Math.sin(light) * z,
        y,
        Math.cos(light) * z - Math.sin(light) * x,
    ];
    const directionTo = (place: Vector) => turn(normalise(place));
    const isFar = 0; // the fourth number of a light that is a direction
    const lights = [keyLight, rimLight, noLight, noLight];
    const framesPerSecond = 30;
    return new Map<string, readonly number[]>([
        ['world', identity],
        ['worldInverseTranspose', identity],
        ['worldViewProjection', camera.viewProjection],
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
