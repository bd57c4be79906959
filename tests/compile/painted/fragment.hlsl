cbuffer FragmentUniforms : register(b1)
{
    float3 tint : packoffset(c0);
    float gloss : packoffset(c0.w);
    float3 lights[2] : packoffset(c1);
};

Texture2D<float4> paintTexture : register(t0);
SamplerState paintTextureSampler : register(s0);
Texture1D<float4> rampTexture : register(t1);
SamplerState rampTextureSampler : register(s1);

static float4 interpolant0;
static float4 interpolant1;
static float4 fragmentColour0;

struct SPIRV_Cross_Input
{
    float4 interpolant0 : TEXCOORD0;
    float4 interpolant1 : TEXCOORD1;
};

struct SPIRV_Cross_Output
{
    float4 fragmentColour0 : SV_Target0;
};

void frag_main()
{
    float3 _54 = paintTexture.Sample(paintTextureSampler, interpolant1.xy).xyz;
    float3 _57 = pow((_54 + 0.054999999701976776123046875f.xxx) * 0.947867333889007568359375f.xxx, 2.400000095367431640625f.xxx);
    float3 _58 = _54 * 0.077399380505084991455078125f.xxx;
    bool3 _59 = bool3(_54.x <= 0.040449999272823333740234375f.xxx.x, _54.y <= 0.040449999272823333740234375f.xxx.y, _54.z <= 0.040449999272823333740234375f.xxx.z);
    float3 _71 = rampTexture.Sample(rampTextureSampler, clamp(dot(interpolant0.xyz, lights[0] + lights[1]), 0.0f, 1.0f)).xyz;
    float3 _74 = float3(_59.x ? _58.x : _57.x, _59.y ? _58.y : _57.y, _59.z ? _58.z : _57.z) * tint;
    bool3 _75 = bool3(_74.x < _71.x, _74.y < _71.y, _74.z < _71.z);
    fragmentColour0 = float4(float3(_75.x ? _74.x : _71.x, _75.y ? _74.y : _71.y, _75.z ? _74.z : _71.z) + gloss.xxx, 1.0f);
}

SPIRV_Cross_Output main(SPIRV_Cross_Input stage_input)
{
    interpolant0 = stage_input.interpolant0;
    interpolant1 = stage_input.interpolant1;
    frag_main();
    SPIRV_Cross_Output stage_output;
    stage_output.fragmentColour0 = fragmentColour0;
    return stage_output;
}
