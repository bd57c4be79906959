// MaterialX documents with one standard node each, for each signature of a node in the standard libraries. The inputs
// vary over the surface.

import { slope } from './scene.mjs';

const components = { float: 1, integer: 1, boolean: 1, vector2: 2, vector3: 3, vector4: 4, color3: 3, color4: 4 };

/** Ranges of inputs that differ from -1.5 to 2.5, by node and input; "" is the range of all other inputs of a node. */
const positive = [0.1, 3];
const unit = [0.05, 0.95];
const low = [-0.8, 0.2];
const high = [0.9, 2];
const blend = { '': unit };
const ranges = {
  sqrt: { '': positive }, ln: { '': positive }, power: { in1: positive }, unpremult: { '': positive },
  asin: { '': [-0.95, 0.95] }, acos: { '': [-0.95, 0.95] }, tan: { '': [-1.2, 1.2] },
  divide: { in2: positive }, modulo: { in2: positive }, clamp: { low, high },
  range: { inlow: low, inhigh: high, gamma: [0.5, 2], outlow: low, outhigh: high }, remap: { inlow: low, inhigh: high },
  smoothstep: { low, high }, place2d: { scale: positive, rotate: [-90, 200] }, rotate2d: { amount: [-90, 200] },
  rotate3d: { amount: [-90, 200] }, UsdTransform2d: { scale: positive, rotation: [-90, 200] },
  refract: { ior: [0.4, 0.9] }, rgbtohsv: blend, hsvtorgb: blend, hsvadjust: blend, colorcorrect: blend,
  burn: blend, dodge: blend, difference: blend, screen: blend, overlay: blend, in: blend, out: blend, over: blend,
  matte: blend, mask: blend, inside: blend, outside: blend, mix: { mix: unit }, plus: { mix: unit }, minus: { mix: unit },
  switch: { which: [0, 9.9] }, normalmap: { in: unit, scale: positive },
  checkerboard: { uvtiling: positive }, grid: { uvtiling: positive, thickness: unit }, circle: { radius: positive },
  line: { radius: [0.05, 0.5] }, tiledimage: { uvtiling: positive, realworldimagesize: positive, realworldtilesize: positive },
  gltf_image: { scale: positive, rotate: [-90, 200] }, gltf_colorimage: { scale: positive, rotate: [-90, 200] },
};

/** Inputs whose values select what the node does; each entry is a separate case. */
const choices = {
  invert: [{}, { amount: '1' }],
  power: [{}, { in2: '2' }],
  range: [{}, { doclamp: 'true' }, { doclamp: 'true', gamma: '1' }, { gamma: '1' }],
  place2d: [{}, { rotate: '0' }, { operationorder: '1' }, { operationorder: '1', rotate: '0' }],
  position: [{ space: 'object' }, { space: 'world' }], normal: [{ space: 'object' }, { space: 'world' }],
  tangent: [{ space: 'object' }, { space: 'world' }], bitangent: [{ space: 'object' }, { space: 'world' }],
  viewdirection: [{ space: 'object' }, { space: 'world' }],
  facingratio: ['true', 'false'].flatMap((faceforward) => ['true', 'false'].map((invert) => ({ faceforward, invert }))),
  texcoord: [{}, { index: '1' }],
  extract: [{ index: '0' }, { index: '1' }, { index: '2' }, { index: '3' }],
  gltf_image: [{}, { operationorder: '1' }],
  ...Object.fromEntries(['transformpoint', 'transformvector', 'transformnormal'].map((name) =>
    [name, [['object', 'world'], ['world', 'object']].map(([fromspace, tospace]) => ({ fromspace, tospace }))])),
  ...Object.fromEntries(['plus', 'minus', 'difference', 'burn', 'dodge', 'screen', 'overlay'].map((name) =>
    [name, [{}, { mix: '1' }]])),
};

/**
 * Whether a case is omitted. The generator does not find the name of the property that "UsdPrimvarReader" reads, and its
 * programs for "geompropvalue" and for the four components of "UsdUVTexture" are refused by all browsers. It transforms
 * view directions to object space as if they were normals, and sets the alpha of colours to 1 when it converts them from
 * and to HSV, although MaterialX defines that alpha is kept. A component that does not exist has no meaning, and two
 * strengths of a normal map have no counterpart.
 */
function isLeftOut(definition, output, given) {
  const category = definition.getNodeString();
  const inputs = definition.getActiveInputs();
  const typeOf = (name) => inputs.find((input) => input.getName() === name)?.getType();
  return ['UsdPrimvarReader', 'geompropvalue'].includes(category) || output.getName() === 'rgba' ||
    category === 'extract' && Number(given.index) >= components[typeOf('in')] ||
    category === 'viewdirection' && given.space === 'object' ||
    category === 'normalmap' && typeOf('scale') !== 'float' ||
    /hsv|colorcorrect/.test(category) && typeOf('in') === 'color4';
}

/** Nodes whose booleans vary; those of other nodes select what the node does. */
const logic = ['and', 'or', 'xor', 'not', 'ifequal'];

const text = (name, type, value) => `<input name="${name}" type="${type}" value="${value}"/>`;
const link = (name, type, node, output = '') =>
  `<input name="${name}" type="${type}" nodename="${node}"${output && ` output="${output}"`}/>`;

/** Writes the nodes of one document. */
class Writer {
  nodes = '<texcoord name="uv" type="vector2"/>\n';
  count = 0;

  add(category, type, ...inputs) {
    const name = `s${this.count++}`;
    this.nodes += `<${category} name="${name}" type="${type}">${inputs.join('')}</${category}>\n`;
    return name;
  }

  /** Adds a number that varies linearly over the surface, each time in a different direction. */
  number(range) {
    const { x, y, start } = slope(this.count, range);
    const along = this.add('dotproduct', 'float', link('in1', 'vector2', 'uv'),
      text('in2', 'vector2', `${x.toFixed(5)}, ${y.toFixed(5)}`));
    return this.add('add', 'float', link('in1', 'float', along), text('in2', 'float', start.toFixed(5)));
  }

  value(type, range) {
    if (type === 'float')
      return this.number(range);
    if (type === 'integer')
      return this.add('floor', 'integer', link('in', 'float', this.number(range)));
    if (type === 'boolean')
      return this.add('ifgreater', 'boolean', link('value1', 'float', this.number([0, 1])),
        text('value2', 'float', '0.5'));
    const parts = Array.from({ length: components[type] }, (_, i) => link(`in${i + 1}`, 'float', this.number(range)));
    return this.add(`combine${components[type]}`, type, ...parts);
  }

  /** Converts an output to the colour that is drawn. */
  show(node, type, output) {
    const input = link('in', type, node, output);
    if (type === 'color3')
      return { node, output };
    if (components[type] === 1 || type === 'vector3')
      return { node: this.add('convert', 'color3', input) };
    const part = (index) => this.add('extract', 'float', input, text('index', 'integer', index));
    const [x, y, z = '', w = ''] = Array.from({ length: components[type] }, (_, i) => part(i));
    const three = this.add('combine3', 'color3', link('in1', 'float', x), link('in2', 'float', y),
      z ? link('in3', 'float', z) : '');
    return { node: w ? this.add('add', 'color3', link('in1', 'color3', three), link('in2', 'float', w)) : three };
  }

  finish({ node, output = '' }) {
    return `<?xml version="1.0"?>\n<materialx version="1.39">\n<nodegraph name="g">\n${this.nodes}` +
      `<output name="out" type="color3" nodename="${node}"${output && ` output="${output}"`}/>\n</nodegraph>\n` +
      '<surface_unlit name="surface" type="surfaceshader">\n' +
      '<input name="emission_color" type="color3" nodegraph="g" output="out"/>\n</surface_unlit>\n' +
      '<surfacematerial name="material" type="material">\n' +
      '<input name="surfaceshader" type="surfaceshader" nodename="surface"/>\n</surfacematerial>\n</materialx>\n';
  }
}

function writeCase(definition, output, given, isWhole) {
  const writer = new Writer();
  const category = definition.getNodeString();
  const inputs = [];
  let isFirst = true;
  for (const input of definition.getActiveInputs()) {
    const name = input.getName();
    const type = input.getType();
    if (name in given) {
      const isNumber = components[type] > 1 && !given[name].includes(','); // one number for all components
      inputs.push(text(name, type, isNumber ? Array(components[type]).fill(given[name]).join(', ') : given[name]));
    } else if (type === 'filename') {
      inputs.push(text(name, type, 'picture.png'));
    } else if (type in components && !input.getIsUniform() && !input.hasDefaultGeomPropString() &&
      (isWhole || isFirst) && (type !== 'boolean' || logic.includes(category)) &&
      (type !== 'integer' || /^(which|value\d)$/.test(name))) {
      const own = ranges[category] ?? {};
      inputs.push(link(name, type, writer.value(type, own[name] ?? own[''] ?? [-1.5, 2.5])));
      isFirst = false;
    }
  }
  const isSingle = definition.getActiveOutputs().length === 1;
  const node = writer.add(category, isSingle ? output.getType() : 'multioutput', ...inputs);
  return writer.finish(writer.show(node, output.getType(), isSingle ? '' : output.getName()));
}

/**
 * Makes the cases for some nodes, each with a name, a category and a document as text. All inputs vary; for the first
 * signature, in a second case only the first input varies and the others have their default values.
 * @param library standard libraries of MaterialX
 * @param categories names of nodes
 */
export function makeCases(library, categories) {
  const cases = [];
  const known = new Set(); // categories with the numbers of their choices
  for (const definition of library.getNodeDefs()) {
    const category = definition.getNodeString();
    const outputs = definition.getActiveOutputs();
    const types = [...definition.getActiveInputs(), ...outputs].map((port) => port.getType());
    const isDrawn = outputs.every((output) => output.getType() in components) &&
      types.every((type) => type in components || /filename|string/.test(type));
    if (!categories.includes(category) || !isDrawn)
      continue;
    for (const output of outputs) {
      for (const [i, given] of (choices[category] ?? [{}]).entries()) {
        if (isLeftOut(definition, output, given))
          continue;
        const key = `${category} ${i}`;
        const isFirst = !known.has(key);
        known.add(key);
        const name = [definition.getName().slice(3), outputs.length > 1 && output.getName(), i > 0 && `choice${i}`]
          .filter(Boolean).join('_');
        const material = writeCase(definition, output, given, true);
        cases.push({ name, category, text: material });
        const plain = writeCase(definition, output, given, false);
        if (isFirst && plain !== material)
          cases.push({ name: `${name}_defaults`, category, text: plain });
      }
    }
  }
  return cases;
}
