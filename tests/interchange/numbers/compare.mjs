// Compares the results of MaterialX's nodes with those of their counterparts here. Documents with one node each are
// drawn with programs of MaterialX's own generator and with those of `mox export`; the documents that `mox convert`
// writes back are drawn as well. The same browser draws all of them.
// Usage: node compare.mjs MOX [WORD]. WORD is a regular expression that selects cases by name. Exits with 77 if there is
// no browser, or if MaterialX's package cannot be installed.

import { execFile, spawnSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';
import { makeCases } from './cases.mjs';
import { makeDocuments } from './documents.mjs';
import { eye, frame, picture, size, streams, time, viewProjection, world, worldInverse,
  worldInverseTranspose, worldTranspose, worldViewProjection } from './scene.mjs';

const here = fileURLToPath(new URL('.', import.meta.url));
const root = path.join(here, '../../..');
const [mox, word = ''] = process.argv.slice(2);
const bound = 1e-4; // relative to the larger number, or absolute for numbers below 1
const run = promisify(execFile);

async function loadPeer() {
  if (spawnSync('chromium', ['--version']).status !== 0) {
    console.log('there is no Chromium');
    process.exit(77);
  }
  const peers = path.join(root, 'bench/peers');
  if (!fs.existsSync(path.join(peers, 'node_modules/@needle-tools'))) {
    const options = { cwd: peers, stdio: 'inherit', timeout: 120000 };
    if (spawnSync('npm', ['ci', '--ignore-scripts', '--no-audit', '--no-fund'], options).status !== 0) {
      console.log('the package of MaterialX cannot be installed');
      process.exit(77);
    }
  }
  return (await import('../../../bench/peers/generator.mjs')).loadGenerator();
}

/** The nodes of the table that have a counterpart here. */
function categoriesOf(table) {
  const categories = [];
  for (const [, names, alternatives] of table.matchAll(/<node name="([^"]+)"[^>]*>(.*?)<\/node>/gs)) {
    if (/<(direct|composed)/.test(alternatives))
      categories.push(...names.split(' '));
  }
  return categories;
}

const { mx, generator, context, library } = await loadPeer();
context.getOptions().hwImplicitBitangents = false; // the mesh contains bitangents

/** Streams and uniforms by their names in the generator's programs. */
const peerStreams = {
  i_position: 'position', i_normal: 'normal', i_tangent: 'tangent', i_bitangent: 'binormal', i_texcoord_0: 'uv0',
  i_texcoord_1: 'uv1', i_color_0: 'colour0', i_geomprop_stain: 'stain',
};
const peerUniforms = {
  u_worldMatrix: world, u_worldInverseTransposeMatrix: worldInverseTranspose, u_viewProjectionMatrix: viewProjection,
  u_worldInverseMatrix: worldInverse, u_worldTransposeMatrix: worldTranspose, u_viewPosition: eye, u_frame: [frame], u_time: [time],
};

/** The numbers of a value, or 0 for uniforms of the generator that have no value. */
const numbersOf = (value) =>
  (value?.getValueString() ?? '0').split(',').map((word) => word === 'true' ? 1 : Number(word) || 0);

/** The output that the shader reads as its emission. Adds a node graph if the emission is constant. */
async function findOutput(document, text) {
  const name = /<nodegraph name="([^"]*)"/.exec(text)?.[1]; // the document also contains node graphs of the library
  if (name)
    return document.getNodeGraph(name).getOutputs()[0];
  const value = /name="emission_color" type="color3" value="([^"]*)"/.exec(text)?.[1] ?? '0, 0, 0';
  await mx.readFromXmlString(document, '<materialx version="1.39"><nodegraph name="g">' +
    `<constant name="c" type="color3"><input name="value" type="color3" value="${value}"/></constant>` +
    '<output name="out" type="color3" nodename="c"/></nodegraph></materialx>', '');
  return document.getNodeGraph('g').getOutput('out');
}

const makePeerProgram = (text) => generateProgram(text).catch((error) =>
  ({ error: typeof error === 'number' ? mx.getExceptionMessage(error) : String(error) }));

async function generateProgram(text) {
  const document = mx.createDocument();
  document.setDataLibrary(library);
  await mx.readFromXmlString(document, text, '');
  const shader = generator.generate('material', await findOutput(document, text), context);
  const highp = (stage) => shader.getSourceCode(stage).replace('precision mediump float', 'precision highp float');
  const program = { vertex: highp('vertex'), fragment: highp('pixel'), uniforms: {}, blocks: [], samplers: [] };
  program.inputs = [...program.vertex.matchAll(/^in \w+ (\w+);/gm)]
    .map(([, name]) => ({ name, stream: peerStreams[name] }));
  for (const stage of ['vertex', 'pixel']) {
    const blocks = shader.getStage(stage).getUniformBlocks();
    for (const block of [blocks.PrivateUniforms, blocks.PublicUniforms]) {
      for (let i = 0; i < block.size(); ++i) {
        const variable = block.get(i);
        const name = variable.getVariable();
        const type = variable.getType().getName();
        if (type === 'filename')
          program.samplers.push(name);
        else if (type !== 'string')
          program.uniforms[name] = { type, numbers: peerUniforms[name] ?? numbersOf(variable.getValue()) };
      }
    }
  }
  shader.delete();
  document.delete();
  return program;
}

const values = {
  world, worldInverseTranspose, worldViewProjection, eyePosition: eye, time: [time], frame: [frame],
};

/** Reads the values of the material's bindings. */
async function readBindings(file) {
  const { stdout } = await run(mox, ['bindings', file]);
  return Object.fromEntries([...stdout.matchAll(/stream="float" tag="(\w+)".*? default="([^"]*)"/g)]
    .map(([, tag, numbers]) => [tag, numbers.split(',').map(Number)]));
}

async function makeOwnProgram(base) {
  const reflection = JSON.parse(fs.readFileSync(`${base}.reflection.json`, 'utf8'));
  const text = (stage) => fs.readFileSync(`${base}.${stage}.essl`, 'utf8');
  const own = reflection.uniformBlocks.material ? await readBindings(`${base}.xml`) : {};
  const blocks = Object.values(reflection.uniformBlocks).map((block) => {
    const numbers = new Float32Array(block.size / 4);
    for (const member of block.members.filter(({ stages }) => stages.length > 0))
      numbers.set(values[member.environment] ?? own[member.name], member.offset / 4);
    return { name: block.name, number: block.set, bytes: Array.from(new Uint8Array(numbers.buffer)) };
  });
  return {
    vertex: text('vertex'), fragment: text('fragment'), blocks, uniforms: {},
    inputs: reflection.stages.vertex.inputs.map(({ location, environment, name }) =>
      ({ location, stream: environment ?? name })),
    samplers: Object.values(reflection.targets.essl.fragment.samplers ?? {}).map(({ name }) => name),
  };
}

/** The largest difference between two images, measured like bound; infinite if a pixel is NaN. */
function differ(one, other) {
  let most = 0;
  for (const [i, a] of one.entries()) {
    const b = other[i];
    if (i % 4 === 3 || a === b)
      continue;
    const difference = Math.abs(a - b) / Math.max(1, Math.abs(a), Math.abs(b));
    most = Math.max(most, Number.isNaN(difference) ? Infinity : difference);
  }
  return most;
}

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'mox_numbers_'));
process.on('exit', () => fs.rmSync(folder, { recursive: true }));
const at = (name) => path.join(folder, name);

const table = fs.readFileSync(path.join(root, 'mox/interchange/standard_nodes.xml'), 'utf8');
const cases = [...makeCases(library, categoriesOf(table)), ...makeDocuments(table)]
  .filter(({ name }) => name.match(word));

/** Converts MaterialX documents to our format, and all documents to MaterialX. */
async function convertCases(part) {
  for (const { name, document, text } of part) {
    fs.writeFileSync(at(`${name}.${document ? 'xml' : 'mtlx'}`), document ?? text);
    if (!document)
      await run(mox, ['convert', at(`${name}.mtlx`), '-o', at(`${name}.xml`)]);
    await run(mox, ['convert', at(`${name}.xml`), '-o', at(`${name}.back.mtlx`)]);
  }
}
await Promise.all([0, 1].map((part) => convertCases(cases.filter((_, i) => i % 2 === part))));
await run(mox, ['export', ...cases.map(({ name }) => at(`${name}.xml`)), '-o', folder, '--target', 'essl', '--quiet',
  '--environment', path.join(root, 'environment/unlit')], { maxBuffer: 1 << 26 });

/** Draws programs in the browser. It must respond within minutes, so they are drawn in batches. */
async function draw(programs) {
  const answers = [];
  for (let begin = 0; begin < programs.length; begin += 100) {
    const request = { size, streams, picture, programs: programs.slice(begin, begin + 100) };
    fs.writeFileSync(at('request.json'), JSON.stringify(request));
    await run('node', [path.join(root, 'tests/languages/browser/draw.js'), at('request.json'), at('answer.json'),
      here]);
    answers.push(...JSON.parse(fs.readFileSync(at('answer.json'), 'utf8')));
  }
  return answers;
}

const programs = new Map(); // numbers by content; a converted document often yields the same program
const numbered = [];
function addProgram(program) {
  const key = JSON.stringify(program);
  if (!programs.has(key)) {
    programs.set(key, numbered.length);
    numbered.push(program);
  }
  return programs.get(key);
}
const drawings = [];
for (const { name, text } of cases) {
  const drawn = [await makeOwnProgram(at(name)), await makePeerProgram(fs.readFileSync(at(`${name}.back.mtlx`), 'utf8'))];
  if (text)
    drawn.push(await makePeerProgram(text));
  drawings.push(drawn.map(addProgram));
}
console.log(`${numbered.length} programs`);
const answers = await draw(numbered);

let failures = 0;
const worst = new Map();
for (const [i, { name, category }] of cases.entries()) {
  const [ours, back, theirs] = drawings[i].map((number) => answers[number]);
  for (const [what, drawn] of [['what is written', back], ['what is read', theirs ?? back]]) {
    const error = ours.error ?? drawn.error;
    const most = error ? Infinity : differ(ours.pixels, drawn.pixels);
    worst.set(category, Math.max(worst.get(category) ?? 0, most));
    if (most > bound) {
      ++failures;
      console.log(`${name}: ${what}: ${error ?? most}`);
    }
  }
}
const greatest = [...worst].sort((a, b) => b[1] - a[1]).slice(0, 8);
console.log(`${cases.length} cases of ${worst.size} nodes, ${failures} differences above ${bound}`);
console.log('greatest:', greatest.map(([category, most]) => `${category} ${most.toExponential(1)}`).join(', '));
process.exitCode = failures > 0 ? 1 : 0;
