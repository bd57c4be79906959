cbuffer ObjectUniforms : register(b2)
{
	column_major float4x4 world : packoffset(c0);
	column_major float4x4 worldViewProjection : packoffset(c4);
}

// node "World Normal"
void worldNormalCode(float3 in_normal, float4x4 in_world, out float3 out_value)
{
	out_value = mul(in_world, float4(in_normal, 0.0)).xyz;
}

void main(
	in float3 position : ATTR0,
	in float3 normal : ATTR2,
	in float2 uv0 : ATTR8,
	out float4 interpolant0 : TEXCOORD0,
	out float4 interpolant1 : TEXCOORD1,
	out float4 clipPosition : SV_Position)
{
	interpolant0 = (float4)0;
	interpolant1 = (float4)0;
	float3 worldNormal;
	worldNormalCode(normal, world, worldNormal);
	interpolant0.xyz = worldNormal;
	interpolant1.xy = uv0;
	clipPosition = mul(worldViewProjection, float4(position, 1.0));
}
