#version 450

layout(std140, binding = 1) uniform FragmentUniforms
{
	vec3 tint;
	float gloss;
	vec3 lights[2];
} mox;

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
	float facing = clamp(dot(interpolant0.xyz, mox.lights[0] + mox.lights[1]), 0.0, 1.0);
	vec3 ramp;
	textureCode_2(facing, rampTexture, ramp);
	vec3 point;
	mathsCode(paint * mox.tint, ramp, point);
	colour = vec4(point + mox.gloss, 1.0);
}
