struct ObjectUniforms {
	world: mat4x4f,
	worldViewProjection: mat4x4f,
}

@group(2) @binding(0) var<uniform> moxObject: ObjectUniforms;

struct VertexInput {
	@location(0) position: vec3f,
	@location(2) normal: vec3f,
	@location(8) uv0: vec2f,
}

struct VertexOutput {
	@location(0) interpolant0: vec4f,
	@location(1) interpolant1: vec4f,
	@builtin(position) clipPosition: vec4f,
}

// node "World Normal"
fn worldNormalCode(in_normal: vec3f, in_world: mat4x4f, out_value: ptr<function, vec3f>) {
	*out_value = (in_world * vec4f(in_normal, 0.0)).xyz;
}

@vertex
fn vertexMain(input: VertexInput) -> VertexOutput {
	var interpolant0: vec4f;
	var interpolant1: vec4f;
	var clipPosition: vec4f;
	interpolant0 = vec4f();
	interpolant1 = vec4f();
	var worldNormal: vec3f;
	worldNormalCode(input.normal, moxObject.world, &worldNormal);
	interpolant0 = vec4f(worldNormal.x, worldNormal.y, worldNormal.z, interpolant0.w);
	interpolant1 = vec4f(input.uv0.x, input.uv0.y, interpolant1.z, interpolant1.w);
	clipPosition = moxObject.worldViewProjection * vec4f(input.position, 1.0);
	return VertexOutput(interpolant0, interpolant1, clipPosition);
}
