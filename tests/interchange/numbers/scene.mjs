// What the square is drawn with: streams at its four corners, matrices column by column, and a picture.

export const size = 8;

const corners = [[-1, -1], [1, -1], [-1, 1], [1, 1]];

export const streams = {
  position: corners.map(([x, y]) => [x, y, 0.25]),
  uv0: corners.map(([x, y]) => [0.5 + 0.5 * x, 0.5 + 0.5 * y]),
  uv1: corners.map(([x, y]) => [0.2 - 0.4 * y, 0.3 + 0.7 * x]),
  colour0: corners.map(([x, y]) => [0.5 + 0.5 * x, 0.5 - 0.4 * y, 0.6 + 0.3 * x * y, 0.7 - 0.2 * x]),
  stain: corners.map(([x, y]) => [0.3 + 0.2 * y, 0.4 - 0.3 * x, 0.6 - 0.3 * x * y, 0.2 + 0.1 * x]),
  // The same everywhere, as one who turns them before they are interpolated gets other directions between.
  tangent: corners.map(() => [0.8, 0.36, -0.48]),
  binormal: corners.map(() => [-0.6, 0.48, -0.64]),
  normal: corners.map(() => [0, 0.8, 0.6]),
};

// Scales by 2, 1 and 0.5, turns a quarter around z, and moves.
export const world = [0, 2, 0, 0, -1, 0, 0, 0, 0, 0, 0.5, 0, 0.5, -0.25, 1, 1];
export const worldInverseTranspose = [0, 0.5, 0, 0, -1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1];
export const worldTranspose = [0, -1, 0, 0.5, 2, 0, 0, -0.25, 0, 0, 0.5, 1, 0, 0, 0, 1];
export const worldInverse = [0, -1, 0, 0, 0.5, 0, 0, 0, 0, 0, 2, 0, 0.125, 0.5, -2, 1];
export const worldViewProjection = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1];
/** The other two matrices after the inverse of the first. */
export const viewProjection = [0, -1, 0, 0, 0.5, 0, 0, 0, 0, 0, 0, 0, 0.125, 0.5, 0, 1];

export const eye = [1.5, -0.5, 4];
export const time = 2.5;
export const frame = 60;

/** Four by four texels of RGBA. */
export const picture = Array.from({ length: 64 }, (_, i) => (i * 73 + 40) % 256);
