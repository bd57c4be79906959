// Compiles Babylon.js node materials from JSON to GLSL with Babylon's NullEngine, which renders nothing.

import { makeShape, valueOf, report } from './shapes.mjs';
import {
  AddBlock, ColorMergerBlock, FragmentOutputBlock, InputBlock, Logger, MultiplyBlock, NodeMaterial,
  NodeMaterialSystemValues, NullEngine, Scene, TransformBlock, VertexOutputBlock,
} from '@babylonjs/core/index.js';

Logger.LogLevels = Logger.NoneLogLevel;
const scene = new Scene(new NullEngine());

function makeClipPosition() {
  const position = new InputBlock('position');
  position.setAsAttribute('position');
  const matrix = new InputBlock('matrix');
  matrix.setAsSystemValue(NodeMaterialSystemValues.WorldViewProjection);
  const transform = new TransformBlock('transform');
  position.connectTo(transform);
  matrix.connectTo(transform);
  return transform;
}

/// Parsing also builds the material. Blocks may load parts of their source first, so an event
/// signals the end of a build.
function finishBuild(material) {
  if (!material.buildIsInProgress) return undefined;
  return new Promise((resolve, reject) => {
    material.onBuildObservable.addOnce(resolve);
    material.onBuildErrorObservable.addOnce(
      (message) => reject(new Error(message.replaceAll('\n', ' '))));
  });
}

function makeDocument(shape, count) {
  const material = new NodeMaterial('material', scene);
  const vertexOutput = new VertexOutputBlock('vertexOutput');
  makeClipPosition().connectTo(vertexOutput);
  const blocks = [];
  makeShape(shape, count).forEach((node, i) => {
    const block = i % 2 === 0 ? new MultiplyBlock(`n${i}`) : new AddBlock(`n${i}`);
    const feed = (source, port, value) => {
      if (source !== undefined) return blocks[source].output.connectTo(port);
      const input = new InputBlock(`v${i}`);
      input.value = value;
      input.isConstant = true;
      return input.output.connectTo(port);
    };
    feed(node.first, block.left, i);
    feed(node.second, block.right, valueOf(shape, i));
    blocks.push(block);
  });
  const fragmentOutput = new FragmentOutputBlock('fragmentOutput');
  const colour = new ColorMergerBlock('colour');
  for (const port of [colour.r, colour.g, colour.b]) blocks[count - 1].output.connectTo(port);
  colour.rgbOut.connectTo(fragmentOutput.rgb);
  material.addOutputNode(vertexOutput);
  material.addOutputNode(fragmentOutput);
  const text = JSON.stringify(material.serialize());
  material.dispose();
  return text;
}

await report('Babylon.js', (shape, count) => {
  let text;
  return async () => {
    text ??= makeDocument(shape, count);
    const material = NodeMaterial.Parse(JSON.parse(text), scene, '');
    await finishBuild(material);
    const texts = [material._vertexCompilationState.compilationString,
      material._fragmentCompilationState.compilationString];
    material.dispose();
    return texts;
  };
});
