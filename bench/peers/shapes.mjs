// The shapes of mox_bench_material used for the peers. Each node lists the indices of the nodes
// that feed its two inputs, or undefined.

export function makeShape(shape, count) {
  const nodes = Array.from({ length: count }, () => ({ first: undefined, second: undefined }));
  if (shape === 'chain') {
    for (let i = 1; i < count; ++i) nodes[i].first = i - 1;
  } else if (shape === 'tree') {
    const root = count - 1;
    for (let number = 0; number < count; ++number) {
      const node = nodes[root - number];
      if (2 * number + 1 < count) node.first = root - (2 * number + 1);
      if (2 * number + 2 < count) node.second = root - (2 * number + 2);
    }
  } else {
    throw new Error(`"${shape}" is no shape`);
  }
  return nodes;
}

/// The value of a node's second input if no node feeds it.
export function valueOf(shape, index) {
  return shape === 'chain' ? index % 16 : index;
}

/// The median time per node over several runs, in seconds, after a warm-up run.
async function measure(count, runs, run) {
  await run();
  const times = [];
  for (let i = 0; i < runs; ++i) {
    const start = process.hrtime.bigint();
    await run();
    times.push(Number(process.hrtime.bigint() - start) / 1e9 / count);
  }
  times.sort((a, b) => a - b);
  return times[Math.floor(times.length / 2)];
}

/// Measures chains and trees of the sizes on the command line and prints one JSON object with the
/// seconds per node, or the error. makeRun prepares a document and returns the function to measure,
/// which returns the source of the two shaders.
export async function report(name, makeRun) {
  const rows = {};
  for (const shape of ['chain', 'tree']) {
    for (const count of process.argv.slice(2).map(Number)) {
      try {
        const run = makeRun(shape, count);
        const [vertex, fragment] = await run();
        if (!vertex.includes('main') || fragment.length < 10 * count) throw new Error('no programs');
        rows[`${shape}/${count}`] = await measure(count, 5, run);
      } catch (error) {
        rows[`${shape}/${count}`] = `fails: ${String(error.message ?? error).split('\n')[0]}`;
      }
    }
  }
  console.log(JSON.stringify({ [name]: rows }));
}
