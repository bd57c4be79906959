// MaterialX's shader generator, compiled to WebAssembly: from MaterialX XML to GLSL ES source. The
// standard libraries are loaded beforehand and not measured.

import { loadGenerator } from './generator.mjs';
import { makeShape, valueOf, report } from './shapes.mjs';

const { mx, generator, context, library } = await loadGenerator();

function makeDocument(shape, count) {
  const nodes = makeShape(shape, count);
  let text = '<?xml version="1.0"?>\n<materialx version="1.38">\n<nodegraph name="g">\n';
  nodes.forEach((node, i) => {
    const input = (name, source, value) => source === undefined
      ? `<input name="${name}" type="float" value="${value}"/>`
      : `<input name="${name}" type="float" nodename="n${source}"/>`;
    text += `<${i % 2 === 0 ? 'multiply' : 'add'} name="n${i}" type="float">` +
      `${input('in1', node.first, i)}${input('in2', node.second, valueOf(shape, i))}` +
      `</${i % 2 === 0 ? 'multiply' : 'add'}>\n`;
  });
  return text + `<convert name="c" type="color3"><input name="in" type="float" nodename="n${count - 1}"/>` +
    '</convert>\n<output name="out" type="color3" nodename="c"/>\n</nodegraph>\n</materialx>\n';
}

await report('MaterialX', (shape, count) => {
  const text = makeDocument(shape, count);
  return async () => {
    const document = mx.createDocument();
    document.setDataLibrary(library);
    await mx.readFromXmlString(document, text, '');
    const output = document.getNodeGraph('g').getOutput('out');
    const shader = generator.generate('material', output, context);
    const texts = [shader.getSourceCode('vertex'), shader.getSourceCode('pixel')];
    shader.delete();
    document.delete();
    return texts;
  };
});
