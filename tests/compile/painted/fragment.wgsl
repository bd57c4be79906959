struct FrameUniforms {
	time: f32,
	padding: f32,
	padding_2: f32,
	padding_3: f32,
	lights: array<vec4<f32>, 2>,
}

@group(0) @binding(0) var<uniform> moxFrame: FrameUniforms;

struct MaterialUniforms {
	tint: vec3f,
	gloss: f32,
}

@group(1) @binding(0) var<uniform> moxMaterial: MaterialUniforms;

@group(1) @binding(1) var paintTexture: texture_2d<f32>;
@group(1) @binding(2) var paintTextureSampler: sampler;
@group(1) @binding(3) var rampTexture: texture_2d<f32>;
@group(1) @binding(4) var rampTextureSampler: sampler;

struct FragmentInput {
	@location(0) interpolant0: vec4f,
	@location(1) interpolant1: vec4f,
}

struct FragmentOutput {
	@location(0) colour: vec4f,
}

fn MoxSrgbToLinear(colour: vec3f) -> vec3f {
	return select(pow((colour + 0.055) / 1.055, vec3f(2.4)), colour / 12.92, colour <= vec3f(0.04045));
}

// node "Paint"
fn textureCode(
	in_uv: vec2f,
	in_sampler: texture_2d<f32>,
	in_samplerSampler: sampler,
	out_colour: ptr<function, vec3f>) {
	var value: vec3f = textureSample(in_sampler, in_samplerSampler, in_uv).xyz;
	value = MoxSrgbToLinear(value);
	*out_colour = value;
}

// node "Ramp"
fn textureCode_2(
	in_uv: f32,
	in_sampler: texture_2d<f32>,
	in_samplerSampler: sampler,
	out_colour: ptr<function, vec3f>) {
	let value: vec3f = textureSample(in_sampler, in_samplerSampler, vec2f(in_uv, 0.0)).xyz;
	*out_colour = value;
}

// node "Darken"
fn mathsCode(in_value1: vec3f, in_value2: vec3f, out_value: ptr<function, vec3f>) {
	*out_value = select(in_value2, in_value1, in_value1 < in_value2);
}

@fragment
fn fragmentMain(input: FragmentInput) -> FragmentOutput {
	var colour: vec4f;
	var paint: vec3f;
	textureCode(input.interpolant1.xy, paintTexture, paintTextureSampler, &paint);
	let facing: f32 = saturate(dot(input.interpolant0.xyz, moxFrame.lights[0].xyz + moxFrame.lights[1].xyz));
	var ramp: vec3f;
	textureCode_2(facing, rampTexture, rampTextureSampler, &ramp);
	var point: vec3f;
	mathsCode(paint * moxMaterial.tint, ramp, &point);
	colour = vec4f(point + moxMaterial.gloss, 1.0);
	return FragmentOutput(colour);
}
