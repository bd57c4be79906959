// The scene in which the square is drawn: streams for its four corners, matrices in column-major order, and an image.

export const size = 8;

const corners = [[-1, -1], [1, -1], [-1, 1], [1, 1]];

/** A linear function of uv that covers a range on the square; each number gives a different direction. */
export function slope(number, [from, to]) {
  const angle = 0.7 + 2.4 * number; // not close to any simple fraction of a circle
  const [cosine, sine] = [Math.cos(angle), Math.sin(angle)];
  const length = (to - from) / (Math.abs(cosine) + Math.abs(sine));
  const [x, y] = [cosine * length, sine * length];
  return { x, y, start: from - Math.min(x, 0) - Math.min(y, 0) };
}

export const streams = {
  position: corners.map(([x, y]) => [x, y, 0.25]),
  uv0: corners.map(([x, y]) => [0.5 + 0.5 * x, 0.5 + 0.5 * y]),
  uv1: corners.map(([x, y]) => [0.2 - 0.4 * y, 0.3 + 0.7 * x]),
  colour0: corners.map(([x, y]) => [0.5 + 0.5 * x, 0.5 - 0.4 * y, 0.6 + 0.3 * x * y, 0.7 - 0.2 * x]),
  stain: corners.map(([x, y]) => [0.3 + 0.2 * y, 0.4 - 0.3 * x, 0.6 - 0.3 * x * y, 0.2 + 0.1 * x]),
  // The same at all corners; otherwise transforming directions before interpolation would give different results.
  tangent: corners.map(() => [0.8, 0.36, -0.48]),
  binormal: corners.map(() => [-0.6, 0.48, -0.64]),
  normal: corners.map(() => [0, 0.8, 0.6]),
};

// Scales by 2, 1 and 0.5, rotates by a quarter turn around z, and translates.
export const world = [0, 2, 0, 0, -1, 0, 0, 0, 0, 0, 0.5, 0, 0.5, -0.25, 1, 1];
export const worldInverseTranspose = [0, 0.5, 0, 0, -1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1];
export const worldTranspose = [0, -1, 0, 0.5, 2, 0, 0, -0.25, 0, 0, 0.5, 1, 0, 0, 0, 1];
export const worldInverse = [0, -1, 0, 0, 0.5, 0, 0, 0, 0, 0, 2, 0, 0.125, 0.5, -2, 1];
export const worldViewProjection = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1];
/** worldViewProjection times worldInverse. */
export const viewProjection = [0, -1, 0, 0, 0.5, 0, 0, 0, 0, 0, 0, 0, 0.125, 0.5, 0, 1];

export const eye = [1.5, -0.5, 4];
export const time = 2.5;
export const frame = 60;

/** 4 by 4 RGBA texels. */
export const picture = Array.from({ length: 64 }, (_, i) => (i * 73 + 40) % 256);
