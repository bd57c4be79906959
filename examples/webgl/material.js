// Draws a material in plain WebGL2 from the files that `mox export --target essl` and `mox
// bindings` write for it.

/** Fetches the files written for a material, BASE.vertex.essl and so on, and the textures next to them. */
export async function loadMaterial(gl, base) {
  const text = async ending => (await fetchFile(base + ending)).text();
  const reflection = JSON.parse(await text('.reflection.json'));
  const bindings = readBindings(await text('.bindings.xml'));
  const program = makeProgram(gl, await text('.vertex.essl'), await text('.fragment.essl'), reflection);
  const textures = new Map();
  for (const { attributes } of bindings.filter(binding => binding.stream === 'texture'))
    textures.set(attributes.tag, await loadTexture(gl, new URL(attributes.default, new URL(base, location))));
  const buffers = new Map(Object.keys(reflection.uniformBlocks).map(rate => [rate, gl.createBuffer()]));
  return { program, reflection, bindings, textures, buffers };
}

async function fetchFile(url) {
  const response = await fetch(url);
  if (!response.ok)
    throw new Error(`${url}: ${response.status} ${response.statusText}`);
  return response;
}

function readBindings(xml) {
  const elements = new DOMParser().parseFromString(xml, 'text/xml').querySelectorAll('binding');
  return [...elements].map(element => {
    const attributes = Object.fromEntries([...element.attributes].map(({ name, value }) => [name, value]));
    return { stream: attributes.stream, tag: attributes.tag, attributes };
  });
}

/** Compiles both programs, and assigns the binding numbers in the reflection to blocks and textures. */
function makeProgram(gl, vertex, fragment, reflection) {
  const program = gl.createProgram();
  for (const [kind, text] of [[gl.VERTEX_SHADER, vertex], [gl.FRAGMENT_SHADER, fragment]]) {
    const shader = gl.createShader(kind);
    gl.shaderSource(shader, text);
    gl.compileShader(shader);
    gl.attachShader(program, shader);
  }
  gl.linkProgram(program);
  if (!gl.getProgramParameter(program, gl.LINK_STATUS))
    throw new Error(gl.getProgramInfoLog(program));
  gl.useProgram(program);
  for (const { name, set } of Object.values(reflection.uniformBlocks))
    gl.uniformBlockBinding(program, gl.getUniformBlockIndex(program, name), set);
  for (const stage of ['vertex', 'fragment']) {
    for (const { name, unit } of reflection.stages[stage].samplers) {
      const nameInText = reflection.targets.essl[stage].samplers[name].name;
      gl.uniform1i(gl.getUniformLocation(program, nameInText), unit);
    }
  }
  return program;
}

/** Loads texels unconverted: the program itself converts from sRGB where the material specifies it. */
async function loadTexture(gl, url) {
  const file = await (await fetchFile(url)).blob();
  const image = await createImageBitmap(file, { colorSpaceConversion: 'none', premultiplyAlpha: 'none' });
  const texture = gl.createTexture();
  gl.bindTexture(gl.TEXTURE_2D, texture);
  gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, gl.RGBA, gl.UNSIGNED_BYTE, image);
  gl.generateMipmap(gl.TEXTURE_2D);
  return texture;
}

/** Packs a block: the components of each value, column by column, at the offsets in the reflection. */
function fillBlock(block, valueOf) {
  const bytes = new DataView(new ArrayBuffer(block.size));
  for (const member of block.members) {
    const values = valueOf(member);
    if (!values)
      continue;
    const [, word, rows = 1, columns = 1, length = 1] =
      /^([a-z]+)(\d)?(?:x(\d))?(?:\[(\d+)\])?$/.exec(member.type);
    const isWhole = word === 'int' || word === 'bool';
    let next = 0;
    for (let element = 0; element < length; ++element) {
      for (let column = 0; column < columns; ++column) {
        for (let row = 0; row < rows; ++row) {
          const at = member.offset + element * (member.arrayStride ?? 0) +
            column * (member.matrixStride ?? 0) + 4 * row;
          if (isWhole)
            bytes.setInt32(at, values[next++], true);
          else
            bytes.setFloat32(at, values[next++], true);
        }
      }
    }
  }
  return bytes;
}

/** Fills one block: "frame" once per frame, "object" per mesh, "material" when its values change. */
export function setBlock(gl, material, rate, values) {
  const block = material.reflection.uniformBlocks[rate];
  if (!block) // neither program uses any of its values
    return;
  gl.bindBufferBase(gl.UNIFORM_BUFFER, block.set, material.buffers.get(rate));
  gl.bufferData(gl.UNIFORM_BUFFER, fillBlock(block, values), gl.DYNAMIC_DRAW);
}

/** The value that the artist has set for a member of the material's block. */
export function valueOfBinding(material, member) {
  const isSame = binding => binding.stream === 'float' && binding.tag === member.name;
  return material.bindings.find(isSame)?.attributes.default.split(',').map(Number);
}

/** Connects the streams of a mesh to the inputs of the vertex program. */
export function connectMesh(gl, material, mesh) {
  const streams = gl.createVertexArray();
  gl.bindVertexArray(streams);
  for (const input of material.reflection.stages.vertex.inputs) {
    // An environment input names its stream; for an input from a binding, the type of the binding
    // determines it.
    const isSame = ({ stream, tag }) => tag === input.name && stream !== 'float' && stream !== 'texture';
    const wanted = input.environment ?? material.bindings.find(isSame).stream;
    const { components, values } = mesh.streams[wanted];
    gl.bindBuffer(gl.ARRAY_BUFFER, gl.createBuffer());
    gl.bufferData(gl.ARRAY_BUFFER, new Float32Array(values), gl.STATIC_DRAW);
    gl.enableVertexAttribArray(input.location);
    gl.vertexAttribPointer(input.location, components, gl.FLOAT, false, 0, 0);
  }
  gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, gl.createBuffer());
  gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, new Uint16Array(mesh.indices), gl.STATIC_DRAW);
  return { streams, count: mesh.indices.length };
}

export function drawMesh(gl, material, { streams, count }) {
  gl.useProgram(material.program);
  for (const stage of ['vertex', 'fragment']) {
    for (const { name, unit } of material.reflection.stages[stage].samplers) {
      gl.activeTexture(gl.TEXTURE0 + unit);
      gl.bindTexture(gl.TEXTURE_2D, material.textures.get(name));
    }
  }
  gl.bindVertexArray(streams);
  gl.drawElements(gl.TRIANGLES, count, gl.UNSIGNED_SHORT, 0);
}
