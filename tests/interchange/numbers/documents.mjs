// Material documents with one node each, with the types and settings that are written as several MaterialX nodes.

import { slope } from './scene.mjs';

/** Component counts of the ports whose count is not 3. */
const counts = [
  [/^in_uv$/, 2],
  [/^in_(amount|u|v|angle|centre[uv]|power|scale|min|facing|blend|width|height)$/, 1],
];
const countOf = (type, port) =>
  type === 'ColourRamp' && port === 'in_value' ? 1 : counts.find(([name]) => name.test(port))?.[1] ?? 3;

/** Ranges of inputs that differ from 0.05 to 0.95, by the settings of the node. */
const ranges = {
  'Reciprocal': [0.3, 2], 'Inverse Square Root': [0.3, 2], 'Exponent 2': [-2, 2], 'Logarithm 2': [0.3, 3],
  'Truncate': [-2.5, 2.5], 'Negate': [-2, 2], 'Arc Tangent': [-3, 3], 'Step': [-1, 1], 'Hue': [0.1, 0.9],
};

class Writer {
  nodes = '';
  edges = '';
  count = 0;

  node(type, properties = {}, feeds = {}) {
    const id = `n${this.count++}`;
    const written = Object.entries(properties).map(([name, value]) => {
      const kind = /^(true|false)$/.test(value) ? 'bool' : /Count$/.test(name) ? 'integer'
        : /^-?\d+(\.\d+)?$/.test(value) ? 'float' : /^[\d. -]+$/.test(value) ? 'colour' : name === 'Name' ? 'string' : 'enum';
      return `<property name="${name}" kind="${kind}" value="${value}"/>`;
    });
    this.nodes += `<node id="${id}" type="${type}" version="0">${written.join('')}</node>\n`;
    for (const [port, { tail, tailPort }] of Object.entries(feeds))
      this.edges += `<edge tail="${tail}" tailPort="${tailPort}" head="${id}" headPort="${port}"/>\n`;
    return id;
  }

  maths(name, first, second) {
    const isNumber = typeof second === 'number';
    const tail = this.node('CoreMaths', { Function: name, ...(isNumber && { 'Default Value 2': second.toFixed(5) }) },
      { in_value1: first, ...(!isNumber && { in_value2: second }) });
    return { tail, tailPort: 'out_value' };
  }

  /** Adds a number that varies linearly over the surface, each time in a different direction. */
  number(range) {
    this.axes ??= this.node('CoreSwizzle', { 'Vector Type': 'Uv' },
      { in_vec: { tail: this.node('CoreUv', { Name: 'uv0' }), tailPort: 'read' } });
    const { x, y, start } = slope(this.count, range);
    const along = (port, part) => this.maths('Multiply', { tail: this.axes, tailPort: port }, part);
    return this.maths('Addition', this.maths('Addition', along('out_x', x), along('out_y', y)), start);
  }

  combine(parts) {
    const kind = parts.length === 2 ? 'Uv' : 'Colour';
    const feeds = Object.fromEntries(parts.map((part, i) => [`in_${'xyz'[i]}`, part]));
    return { tail: this.node('CoreSwizzle', { 'Vector Type': kind, Reverse: 'true' }, feeds), tailPort: 'out_vec' };
  }

  value(count, range) {
    return count === 1 ? this.number(range) : this.combine(Array.from({ length: count }, () => this.number(range)));
  }

  finish(light) {
    const black = this.node('CoreConstant', { 'Lock': 'true', 'Default Colour': '0 0 0' });
    this.node('Surface', {}, { in_colour: { tail: black, tailPort: 'read' }, in_emission: light });
    return `<?xml version="1.0" encoding="UTF-8"?>\n<material version="1">\n<nodes>\n${this.nodes}</nodes>\n` +
      `<edges>\n${this.edges}</edges>\n</material>\n`;
  }
}

const outputs = {
  UvTransform: ['out_uv', 2], ColourAdjust: ['out_colour', 3], ColourRamp: ['out_colour', 3], NormalMaths: ['out_normal', 3],
  SurfaceViewDirection: ['read', 3],
};

/**
 * Makes a case for each formula that the table has for a type of node, except for approximations.
 * @param table standard_nodes.xml
 */
export function makeDocuments(table) {
  const cases = [];
  for (const [, attributes] of table.matchAll(/<back ([^>]*)\/>/g)) {
    const get = (name) => new RegExp(`\\b${name}="([^"]*)"`).exec(attributes)?.[1] ?? '';
    if (get('note'))
      continue;
    const settings = Object.fromEntries(get('set').split(';').filter(Boolean).map((pair) => pair.trim().split('=')));
    const type = get('type');
    const choice = Object.values(settings).join(' ');
    const writer = new Writer();
    const ports = [...new Set(get('is').match(/\bin_\w+/g) ?? [])];
    const feeds = Object.fromEntries(ports.map((port) =>
      [port, writer.value(countOf(type, port), ranges[choice] ?? [0.05, 0.95])]));
    const [port, count] = outputs[type] ?? ['out_value', 3];
    const result = { tail: writer.node(type, settings, feeds), tailPort: port };
    const part = (name) => ({ tail: writer.split ??= writer.node('CoreSwizzle', { 'Vector Type': 'Uv' }, { in_vec: result }),
      tailPort: name });
    const light = count === 2 ? writer.combine([part('out_x'), part('out_y'), part('out_y')]) : result;
    cases.push({ name: `${type}_${choice}`.replace(/\W+/g, '_'), category: `${type} ${choice}`,
      document: writer.finish(light) });
  }
  return cases;
}
