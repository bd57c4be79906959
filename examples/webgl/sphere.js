/** A sphere of radius 1, with the streams that materials may read. */
export function makeSphere() {
  const streams = {};
  for (const [name, components] of
    Object.entries({ position: 3, normal: 3, tangent: 3, binormal: 3, uv: 2, colour: 4 }))
    streams[name] = { components, values: [] };
  const columns = 128;
  const rows = 64;
  for (let row = 0; row <= rows; ++row) {
    for (let column = 0; column <= columns; ++column) {
      const [u, v] = [column / columns, row / rows];
      const longitude = (2 * u - 1) * Math.PI;
      const latitude = (v - 0.5) * Math.PI;
      const [x, z] = [Math.sin(longitude), Math.cos(longitude)];
      const [around, up] = [Math.cos(latitude), Math.sin(latitude)];
      streams.position.values.push(around * x, up, around * z);
      streams.normal.values.push(around * x, up, around * z);
      streams.tangent.values.push(z, 0, -x); // direction of increasing u
      streams.binormal.values.push(-up * x, around, -up * z); // direction of increasing v
      streams.uv.values.push(u, 1 - v); // images start at the top
      streams.colour.values.push(u, v, 0, 1);
    }
  }
  const indices = [];
  for (let row = 0; row < rows; ++row) {
    for (let column = 0; column < columns; ++column) {
      const low = row * (columns + 1) + column;
      const high = low + columns + 1;
      indices.push(low, low + 1, high + 1, low, high + 1, high);
    }
  }
  return { streams, indices };
}
