/** Vectors and matrices. A matrix consists of 16 numbers in column-major order. */

export type Vector = readonly [number, number, number];
export type Matrix = readonly number[];

export function subtract(a: Vector, b: Vector): Vector {
    return [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
}

export function dot(a: Vector, b: Vector): number {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

export function cross(a: Vector, b: Vector): Vector {
    return [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
}

export function scale(a: Vector, factor: number): Vector {
    return [a[0] * factor, a[1] * factor, a[2] * factor];
}

export function add(a: Vector, b: Vector): Vector {
    return [a[0] + b[0], a[1] + b[1], a[2] + b[2]];
}

export function normalise(a: Vector): Vector {
    return scale(a, 1 / Math.hypot(...a));
}

export const identity: Matrix = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];

export function multiply(a: Matrix, b: Matrix): Matrix {
    return Array.from({ length: 16 }, (_, i) => {
        const row = i % 4;
        const column = i - row;
        return [0, 1, 2, 3].reduce((sum, k) => sum + a[4 * k + row]! * b[column + k]!, 0);
    });
}

/** A projection that looks along -z and maps depth to the range from -1 to 1, as in WebGL. */
export function perspective(angle: number, aspect: number, near: number, far: number): Matrix {
    const f = 1 / Math.tan(angle / 2);
    const depth = 1 / (near - far);
    return [f / aspect, 0, 0, 0, 0, f, 0, 0, 0, 0, (near + far) * depth, -1, 0, 0, 2 * near * far * depth, 0];
}

export function lookAt(eye: Vector, middle: Vector, upwards: Vector): Matrix {
    const back = normalise(subtract(eye, middle));
    const right = normalise(cross(upwards, back));
    const up = cross(back, right);
    return [
    right[0], up[0], back[0], 0,
    right[1], up[1], back[1], 0,
    right[2], up[2], back[2], 0,
    -dot(right, eye), -dot(up, eye), -dot(back, eye), 1,
  ]; // prettier-ignore
}
