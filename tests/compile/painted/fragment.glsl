#version 450

layout(std140, binding = 0) uniform FrameUniforms
{
	float time;
	vec3 lights[2];
} moxFrame;

layout(std140, binding = 1) uniform MaterialUniforms
{
	vec3 tint;
	float gloss;
} moxMaterial;

layout(binding = 0) uniform sampler2D paintTexture;
layout(binding = 1) uniform sampler1D rampTexture;
layout(location = 0) in vec4 interpolant0;
layout(location = 1) in vec4 interpolant1;
layout(location = 0) out vec4 colour;

vec3 MoxSrgbToLinear(vec3 colour)
{
	return mix(pow((colour + 0.055) / 1.055, vec3(2.4)), colour / 12.92, lessThanEqual(colour, vec3(0.04045)));
}

// node "Paint"
void textureCode(vec2 in_uv, sampler2D in_sampler, out vec3 out_colour)
{
	vec3 value = texture(in_sampler, in_uv).xyz;
	value = MoxSrgbToLinear(value);
	out_colour = value;
}

// node "Ramp"
void textureCode_2(float in_uv, sampler1D in_sampler, out vec3 out_colour)
{
	vec3 value = texture(in_sampler, in_uv).xyz;
	out_colour = value;
}

// node "Darken"
void mathsCode(vec3 in_value1, vec3 in_value2, out vec3 out_value)
{
	out_value = mix(in_value2, in_value1, lessThan(in_value1, in_value2));
}

void main()
{
	vec3 paint;
	textureCode(interpolant1.xy, paintTexture, paint);
	float facing = clamp(dot(interpolant0.xyz, moxFrame.lights[0] + moxFrame.lights[1]), 0.0, 1.0);
	vec3 ramp;
	textureCode_2(facing, rampTexture, ramp);
	vec3 point;
	mathsCode(paint * moxMaterial.tint, ramp, point);
	colour = vec4(point + moxMaterial.gloss, 1.0);
}
