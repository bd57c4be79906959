cbuffer FrameUniforms : register(b0)
{
	float time : packoffset(c0);
	float3 lights[2] : packoffset(c1);
}

cbuffer MaterialUniforms : register(b1)
{
	float3 tint : packoffset(c0);
	float gloss : packoffset(c0.w);
}

Texture2D paintTexture : register(t0);
SamplerState paintTextureSampler : register(s0);
Texture1D rampTexture : register(t1);
SamplerState rampTextureSampler : register(s1);

float3 MoxSrgbToLinear(float3 colour)
{
	return colour <= float3(0.04045, 0.04045, 0.04045) ? colour / 12.92 : pow((colour + 0.055) / 1.055, float3(2.4, 2.4, 2.4));
}

// node "Paint"
void textureCode(
	float2 in_uv,
	Texture2D in_sampler,
	SamplerState in_samplerSampler,
	out float3 out_colour)
{
	float3 value = in_sampler.Sample(in_samplerSampler, in_uv).xyz;
	value = MoxSrgbToLinear(value);
	out_colour = value;
}

// node "Ramp"
void textureCode_2(
	float in_uv,
	Texture1D in_sampler,
	SamplerState in_samplerSampler,
	out float3 out_colour)
{
	float3 value = in_sampler.Sample(in_samplerSampler, in_uv).xyz;
	out_colour = value;
}

// node "Darken"
void mathsCode(float3 in_value1, float3 in_value2, out float3 out_value)
{
	out_value = in_value1 < in_value2 ? in_value1 : in_value2;
}

void main(
	in float4 interpolant0 : TEXCOORD0,
	in float4 interpolant1 : TEXCOORD1,
	out float4 colour : SV_Target0)
{
	float3 paint;
	textureCode(interpolant1.xy, paintTexture, paintTextureSampler, paint);
	float facing = saturate(dot(interpolant0.xyz, lights[0] + lights[1]));
	float3 ramp;
	textureCode_2(facing, rampTexture, rampTextureSampler, ramp);
	float3 point_;
	mathsCode(paint * tint, ramp, point_);
	colour = float4(point_ + gloss, 1.0);
}
