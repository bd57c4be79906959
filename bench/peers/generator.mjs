// MaterialX's shader generator, compiled to WebAssembly, with its standard libraries.

import fs from 'node:fs';
import path from 'node:path';
import { createRequire } from 'node:module';

const bin = path.join(import.meta.dirname, 'node_modules/@needle-tools/materialx/bin');

/** Loads the package, which takes a second. */
export async function loadGenerator() {
  // The package ships one script for browsers, in the syntax of a module; here it runs as CommonJS.
  const source = fs.readFileSync(path.join(bin, 'JsMaterialXGenShader.js'), 'utf8')
    .replace(/export default MaterialX;\s*$/, '');
  const exported = { exports: {} };
  new Function('module', 'exports', 'require', '__filename', '__dirname', source)(
    exported, exported.exports, createRequire(import.meta.url), path.join(bin, 'x.js'), bin);
  const data = fs.readFileSync(path.join(bin, 'JsMaterialXGenShader.data.txt'));
  const mx = await exported.exports({
    locateFile: (name) => path.join(bin, name),
    wasmBinary: fs.readFileSync(path.join(bin, 'JsMaterialXGenShader.wasm')),
    getPreloadedPackage: () => data.buffer.slice(data.byteOffset, data.byteOffset + data.length),
  });
  const generator = mx.EsslShaderGenerator.create();
  const context = new mx.GenContext(generator);
  return { mx, generator, context, library: mx.loadStandardLibraries(context) };
}
