// Programs output linear light, while a canvas displays bytes as sRGB. Everything is therefore
// drawn into an sRGB texture, which WebGL2 encodes on writing and decodes on reading, and then
// encoded again for the canvas.

const vertexText = `#version 300 es
out vec2 place;
void main()
{
	place = vec2(float(gl_VertexID % 2), float(gl_VertexID / 2)) * 2.0;
	gl_Position = vec4(2.0 * place - 1.0, 0.0, 1.0);
}`;

const fragmentText = `#version 300 es
precision highp float;
uniform sampler2D picture;
in vec2 place;
out vec4 colour;
void main()
{
	vec4 light = texture(picture, place);
	vec3 high = 1.055 * pow(light.rgb, vec3(1.0 / 2.4)) - 0.055;
	colour = vec4(mix(high, 12.92 * light.rgb, lessThanEqual(light.rgb, vec3(0.0031308))), light.a);
}`;

/** Everything drawn between begin and end appears on the canvas. */
export class Screen {
  constructor(gl) {
    this.gl = gl;
    const { width, height } = gl.canvas;
    this.program = gl.createProgram();
    for (const [kind, text] of [[gl.VERTEX_SHADER, vertexText], [gl.FRAGMENT_SHADER, fragmentText]]) {
      const shader = gl.createShader(kind);
      gl.shaderSource(shader, text);
      gl.compileShader(shader);
      gl.attachShader(this.program, shader);
    }
    gl.linkProgram(this.program);
    this.picture = gl.createTexture();
    gl.bindTexture(gl.TEXTURE_2D, this.picture);
    gl.texStorage2D(gl.TEXTURE_2D, 1, gl.SRGB8_ALPHA8, width, height);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, gl.NEAREST);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, gl.NEAREST);
    const depth = gl.createRenderbuffer();
    gl.bindRenderbuffer(gl.RENDERBUFFER, depth);
    gl.renderbufferStorage(gl.RENDERBUFFER, gl.DEPTH_COMPONENT24, width, height);
    this.frame = gl.createFramebuffer();
    gl.bindFramebuffer(gl.FRAMEBUFFER, this.frame);
    gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, this.picture, 0);
    gl.framebufferRenderbuffer(gl.FRAMEBUFFER, gl.DEPTH_ATTACHMENT, gl.RENDERBUFFER, depth);
    this.nothing = gl.createVertexArray();
  }

  begin() {
    const { gl } = this;
    gl.bindFramebuffer(gl.FRAMEBUFFER, this.frame);
    gl.viewport(0, 0, gl.canvas.width, gl.canvas.height);
    gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
    gl.enable(gl.DEPTH_TEST);
  }

  end() {
    const { gl } = this;
    gl.bindFramebuffer(gl.FRAMEBUFFER, null);
    gl.disable(gl.DEPTH_TEST);
    gl.useProgram(this.program);
    gl.activeTexture(gl.TEXTURE0);
    gl.bindTexture(gl.TEXTURE_2D, this.picture);
    gl.bindVertexArray(this.nothing);
    gl.drawArrays(gl.TRIANGLES, 0, 3);
  }
}
