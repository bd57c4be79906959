import { parameterNumbers, type Parameter } from '../model/parameters.ts';
import type { TextureLevels } from '../model/assets.ts';
import type { Programs } from '../model/store.ts';
import { measure, placeCamera, sceneValues, type Extent, type Orbit } from './camera.ts';
import { applyModifiers, streamOf, type Mesh } from './meshes.ts';
import { fillBlock, type Block, type Member, type Reflection, type Stage } from './uniforms.ts';

/** The sampler state of a texture; the document may omit each part. */
interface SamplerState {
    wrapU?: 'repeat' | 'mirror' | 'clamp';
    wrapV?: 'repeat' | 'mirror' | 'clamp';
    filter?: 'nearest' | 'linear' | 'trilinear';
}

export interface View {
    orbit: Orbit;
    /** Rotation of the lights around the vertical axis, in radians. */
    light: number;
    seconds: number;
    background: 'sky' | 'grey';
}

const samples = 4;

const streamWords: Readonly<Record<string, string>> = {
    uv: 'texture coordinates',
    colour: 'vertex colours',
    tangent: 'tangents (computed from texture coordinates)',
    binormal: 'binormals (computed from texture coordinates)',
};

const screenVertex = `#version 300 es
out vec2 place;
void main()
{
    place = vec2(float(gl_VertexID % 2), float(gl_VertexID / 2)) * 2.0;
    gl_Position = vec4(2.0 * place - 1.0, 1.0, 1.0);
}`;

const skyFragment = `#version 300 es
precision highp float;
uniform vec3 sky;
uniform vec3 ground;
in vec2 place;
out vec4 colour;
void main()
{
    colour = vec4(mix(ground, sky, smoothstep(0.0, 1.0, place.y)), 1.0);
}`;

/** Encodes the image from linear light to sRGB. */
const encodeFragment = `#version 300 es
precision highp float;
uniform sampler2D picture;
in vec2 place;
out vec4 colour;
void main()
{
    vec3 light = clamp(texture(picture, place).rgb, 0.0, 1.0);
    vec3 high = 1.055 * pow(light, vec3(1.0 / 2.4)) - 0.055;
    colour = vec4(mix(high, 12.92 * light, lessThanEqual(light, vec3(0.0031308))), 1.0);
}`;

/** Draws the material on a mesh with WebGL2, using its ESSL programs and their reflection. */
export class Renderer {
    private readonly gl: WebGL2RenderingContext;
    private readonly sky: WebGLProgram;
    private readonly encode: WebGLProgram;
    private readonly nothing: WebGLVertexArrayObject;
    private program: WebGLProgram | null = null;
    private reflection: Reflection | null = null;
    private parameters: readonly Parameter[] = [];
    private mesh: Mesh | null = null;
    private extent: Extent | null = null;
    private streams: WebGLVertexArrayObject | null = null;
    private buffers: WebGLBuffer[] = [];
    private blocks: WebGLBuffer[];
    private textures = new Map<string, WebGLTexture>();
    private size = { width: 0, height: 0 };
    private samplesTarget: WebGLFramebuffer | null = null;
    private resolved: WebGLFramebuffer | null = null;
    private picture: WebGLTexture | null = null;
    private storages: WebGLRenderbuffer[] = [];
    /** Messages about streams that the material reads but the mesh lacks. */
    missing: readonly string[] = [];
    /** Number of compilations, for tests and benchmarks. */
    compileCount = 0;

    /** @throws Error if WebGL2 is not available */
    constructor(private readonly canvas: HTMLCanvasElement) {
        const gl = canvas.getContext('webgl2', { antialias: false, preserveDrawingBuffer: true });
        if (!gl) throw new Error('This browser does not support WebGL2, which the preview requires.');
        this.gl = gl;
        this.sky = this.link(screenVertex, skyFragment);
        this.encode = this.link(screenVertex, encodeFragment);
        this.nothing = gl.createVertexArray();
        this.blocks = [gl.createBuffer(), gl.createBuffer(), gl.createBuffer()];
    }

    /** @throws Error with the driver's message if it rejects a program; the previous programs remain in use */
    setPrograms(programs: Programs): void {
        const reflection = JSON.parse(programs.reflection) as Reflection;
        const program = this.link(programs.vertex, programs.fragment);
        const { gl } = this;
        ++this.compileCount;
        if (this.program) gl.deleteProgram(this.program);
        this.program = program;
        this.reflection = reflection;
        const target = reflection.targets.essl;
        for (const block of Object.values(reflection.uniformBlocks)) {
            const index = gl.getUniformBlockIndex(program, block.name);
            if (index !== gl.INVALID_INDEX) gl.uniformBlockBinding(program, index, block.set);
        }
        gl.useProgram(program);
        for (const stage of ['vertex', 'fragment'] as const)
            for (const sampler of reflection.stages[stage].samplers) {
                const name = target?.[stage].samplers?.[sampler.name]?.name ?? sampler.name;
                gl.uniform1i(gl.getUniformLocation(program, name), sampler.unit);
            }
        this.bindStreams();
    }

    setParameters(parameters: readonly Parameter[]): void {
        const modifiers = (list: readonly Parameter[]) =>
            list.map((p) => `${p.stream} ${p.tag} ${p.values.dataset_modifiers}`).join();
        const isOther = modifiers(parameters) !== modifiers(this.parameters);
        this.parameters = parameters;
        if (isOther) this.bindStreams();
    }

    setMesh(mesh: Mesh): void {
        this.mesh = mesh;
        this.extent = measure(mesh, this.canvas.width / this.canvas.height);
        this.bindStreams();
    }

    /** The sampler types of the textures that the programs read, by tag. */
    textureTypes(): Map<string, string> {
        const { stages } = this.reflection ?? {};
        const samplers = [...(stages?.vertex.samplers ?? []), ...(stages?.fragment.samplers ?? [])];
        return new Map(samplers.map(({ name, type }) => [name, type]));
    }

    setTexture(tag: string, sampler: string, image: TextureLevels): void {
        const { gl } = this;
        const old = this.textures.get(tag);
        if (old) gl.deleteTexture(old);
        const texture = gl.createTexture();
        this.textures.set(tag, texture);
        const target = this.targetOf(sampler);
        gl.bindTexture(target, texture);
        const internal = image.isHalf ? gl.RGBA16F : gl.RGBA8;
        const type = image.isHalf ? gl.HALF_FLOAT : gl.UNSIGNED_BYTE;
        image.levels.forEach(({ width, height, layers, texels }, level) => {
            const format = [level, internal, width, height] as const;
            if (target === gl.TEXTURE_3D) {
                gl.texImage3D(target, ...format, layers, 0, gl.RGBA, type, texels);
            } else if (target === gl.TEXTURE_CUBE_MAP) {
                const size = texels.length / layers;
                for (let face = 0; face < layers; ++face) {
                    const part = texels.subarray(face * size, (face + 1) * size);
                    const side = gl.TEXTURE_CUBE_MAP_POSITIVE_X + face;
                    gl.texImage2D(side, ...format, 0, gl.RGBA, type, part);
                }
            } else gl.texImage2D(target, ...format, 0, gl.RGBA, type, texels);
        });
        gl.texParameteri(target, gl.TEXTURE_MAX_LEVEL, image.levels.length - 1);
    }

    private targetOf(sampler: string): GLenum {
        const { gl } = this;
        if (sampler === 'samplerCUBE') return gl.TEXTURE_CUBE_MAP;
        return sampler === 'sampler3D' ? gl.TEXTURE_3D : gl.TEXTURE_2D;
    }

    draw(view: View): void {
        const { gl, extent } = this;
        this.fit();
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.samplesTarget);
        gl.viewport(0, 0, this.size.width, this.size.height);
        gl.clearColor(0.18, 0.18, 0.18, 1);
        gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
        if (extent) {
            const camera = placeCamera(extent, view.orbit, this.size.width / this.size.height);
            const scene = sceneValues(camera, view.light, view.seconds);
            if (view.background === 'sky') this.drawSky(scene);
            if (this.program && this.streams) this.drawMesh(scene);
        }
        gl.bindFramebuffer(gl.READ_FRAMEBUFFER, this.samplesTarget);
        gl.bindFramebuffer(gl.DRAW_FRAMEBUFFER, this.resolved);
        const { width, height } = this.size;
        gl.blitFramebuffer(0, 0, width, height, 0, 0, width, height, gl.COLOR_BUFFER_BIT, gl.NEAREST);
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        gl.disable(gl.DEPTH_TEST);
        gl.useProgram(this.encode);
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, this.picture);
        gl.bindVertexArray(this.nothing);
        gl.drawArrays(gl.TRIANGLES, 0, 3);
    }

    private drawSky(scene: ReadonlyMap<string, readonly number[]>): void {
        const { gl } = this;
        gl.disable(gl.DEPTH_TEST);
        gl.useProgram(this.sky);
        gl.uniform3fv(gl.getUniformLocation(this.sky, 'sky'), [...scene.get('skyColour')!]);
        gl.uniform3fv(gl.getUniformLocation(this.sky, 'ground'), [...scene.get('groundColour')!]);
        gl.bindVertexArray(this.nothing);
        gl.drawArrays(gl.TRIANGLES, 0, 3);
    }

    private drawMesh(scene: ReadonlyMap<string, readonly number[]>): void {
        const { gl, reflection } = this;
        gl.enable(gl.DEPTH_TEST);
        gl.useProgram(this.program);
        const values = (member: Member) =>
            member.environment !== undefined ? scene.get(member.environment) : this.numbersOf(member.name);
        for (const block of Object.values(reflection!.uniformBlocks)) this.fill(block, values);
        for (const stage of [reflection!.stages.vertex, reflection!.stages.fragment]) {
            for (const sampler of stage.samplers) {
                gl.activeTexture(gl.TEXTURE0 + sampler.unit);
                gl.bindTexture(this.targetOf(sampler.type), this.textures.get(sampler.name) ?? null);
                this.setSampler(sampler);
            }
        }
        gl.bindVertexArray(this.streams);
        gl.drawElements(gl.TRIANGLES, this.mesh!.indices.length, gl.UNSIGNED_INT, 0);
    }

    /** Sets the sampler state of the bound texture. The panorama of an environment does not repeat vertically. */
    private setSampler(sampler: Stage['samplers'][number] & SamplerState): void {
        const { gl } = this;
        const wraps = { repeat: gl.REPEAT, mirror: gl.MIRRORED_REPEAT, clamp: gl.CLAMP_TO_EDGE };
        const target = this.targetOf(sampler.type);
        const { wrapU = 'repeat', filter = 'trilinear' } = sampler;
        const wrapV = sampler.wrapV ?? (sampler.environment === undefined ? 'repeat' : 'clamp');
        const isSmooth = filter !== 'nearest';
        const smallFilters = {
            nearest: gl.NEAREST_MIPMAP_NEAREST,
            linear: gl.LINEAR_MIPMAP_NEAREST,
            trilinear: gl.LINEAR_MIPMAP_LINEAR,
        };
        gl.texParameteri(target, gl.TEXTURE_WRAP_S, wraps[wrapU]);
        gl.texParameteri(target, gl.TEXTURE_WRAP_T, wraps[wrapV]);
        gl.texParameteri(target, gl.TEXTURE_MIN_FILTER, smallFilters[filter]);
        gl.texParameteri(target, gl.TEXTURE_MAG_FILTER, isSmooth ? gl.LINEAR : gl.NEAREST);
    }

    private fill(block: Block, values: (member: Member) => readonly number[] | undefined): void {
        const { gl } = this;
        gl.bindBufferBase(gl.UNIFORM_BUFFER, block.set, this.blocks[block.set]!);
        gl.bufferData(gl.UNIFORM_BUFFER, fillBlock(block, values).bytes, gl.DYNAMIC_DRAW);
    }

    /** The parameter for a stream of the mesh. */
    private streamParameter(tag: string): Parameter | undefined {
        return this.parameters.find((p) => p.tag === tag && p.stream !== 'float' && p.stream !== 'texture');
    }

    private numbersOf(tag: string): number[] | undefined {
        const parameter = this.parameters.find((p) => p.tag === tag && p.stream === 'float');
        return parameter && parameterNumbers(parameter);
    }

    /** Binds the streams of the mesh to the inputs of the program. Missing streams read as 0. */
    private bindStreams(): void {
        const { gl, mesh, reflection } = this;
        if (!mesh || !reflection) return;
        if (this.streams) gl.deleteVertexArray(this.streams);
        for (const buffer of this.buffers) gl.deleteBuffer(buffer);
        this.buffers = [];
        const missing: string[] = [];
        this.streams = gl.createVertexArray();
        gl.bindVertexArray(this.streams);
        for (const input of reflection.stages.vertex.inputs) {
            const parameter = input.environment === undefined ? this.streamParameter(input.name) : undefined;
            const type = parameter?.stream ?? input.environment ?? '';
            const stream = streamOf(mesh, type, parameter?.values.default || input.name);
            if (!stream) {
                const reader = parameter ? `, which the material reads as “${parameter.tag}”` : '';
                missing.push(`The mesh “${mesh.name}” has no ${streamWords[type] ?? type}${reader}.`);
                continue;
            }
            const byDefault = parameter?.stream === 'uv' ? 'oneminus|v' : '';
            const modifiers = parameter ? (parameter.values.dataset_modifiers ?? byDefault) : '';
            this.buffers.push(this.upload(gl.ARRAY_BUFFER, applyModifiers(stream, modifiers).values));
            gl.enableVertexAttribArray(input.location);
            gl.vertexAttribPointer(input.location, stream.components, gl.FLOAT, false, 0, 0);
        }
        this.buffers.push(this.upload(gl.ELEMENT_ARRAY_BUFFER, mesh.indices));
        gl.bindVertexArray(null);
        this.missing = missing;
    }

    private upload(target: number, data: Float32Array | Uint32Array): WebGLBuffer {
        const buffer = this.gl.createBuffer();
        this.gl.bindBuffer(target, buffer);
        this.gl.bufferData(target, data, this.gl.STATIC_DRAW);
        return buffer;
    }

    /** Resizes the render targets to the size of the canvas. */
    private fit(): void {
        const { gl, canvas } = this;
        if (this.size.width === canvas.width && this.size.height === canvas.height) return;
        this.size = { width: canvas.width, height: canvas.height };
        const { width, height } = this.size;
        for (const storage of this.storages) gl.deleteRenderbuffer(storage);
        gl.deleteTexture(this.picture);
        gl.deleteFramebuffer(this.samplesTarget);
        gl.deleteFramebuffer(this.resolved);
        this.samplesTarget = gl.createFramebuffer();
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.samplesTarget);
        this.storages = [
            [gl.SRGB8_ALPHA8, gl.COLOR_ATTACHMENT0],
            [gl.DEPTH_COMPONENT24, gl.DEPTH_ATTACHMENT],
        ].map(([format, attachment]) => {
            const storage = gl.createRenderbuffer();
            gl.bindRenderbuffer(gl.RENDERBUFFER, storage);
            gl.renderbufferStorageMultisample(gl.RENDERBUFFER, samples, format!, width, height);
            gl.framebufferRenderbuffer(gl.FRAMEBUFFER, attachment!, gl.RENDERBUFFER, storage);
            return storage;
        });
        this.picture = gl.createTexture();
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, this.picture);
        gl.texStorage2D(gl.TEXTURE_2D, 1, gl.SRGB8_ALPHA8, width, height);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, gl.NEAREST);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, gl.NEAREST);
        this.resolved = gl.createFramebuffer();
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.resolved);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, this.picture, 0);
    }

    private link(vertex: string, fragment: string): WebGLProgram {
        const { gl } = this;
        const program = gl.createProgram();
        for (const [type, text] of [
            [gl.VERTEX_SHADER, vertex],
            [gl.FRAGMENT_SHADER, fragment],
        ] as const) {
            const shader = gl.createShader(type)!;
            gl.shaderSource(shader, text);
            gl.compileShader(shader);
            gl.attachShader(program, shader);
            if (!gl.getShaderParameter(shader, gl.COMPILE_STATUS) && !gl.isContextLost())
                throw new Error(`The graphics driver rejected the program: ${gl.getShaderInfoLog(shader)}`);
            gl.deleteShader(shader);
        }
        gl.linkProgram(program);
        if (!gl.getProgramParameter(program, gl.LINK_STATUS) && !gl.isContextLost())
            throw new Error(`The graphics driver rejected the programs: ${gl.getProgramInfoLog(program)}`);
        return program;
    }
}
