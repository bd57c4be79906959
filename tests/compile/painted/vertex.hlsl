static float4 _28;

cbuffer VertexUniforms : register(b0)
{
    column_major float4x4 worldViewProjection : packoffset(c0);
    column_major float4x4 world : packoffset(c4);
};


static float4 gl_Position;
static float3 position;
static float3 normal;
static float2 uv0;
static float4 interpolant0;
static float4 interpolant1;

struct SPIRV_Cross_Input
{
    float3 position : ATTR0;
    float3 normal : ATTR2;
    float2 uv0 : ATTR8;
};

struct SPIRV_Cross_Output
{
    float4 interpolant0 : TEXCOORD0;
    float4 interpolant1 : TEXCOORD1;
    float4 gl_Position : SV_Position;
};

void vert_main()
{
    float4 _39 = mul(world, float4(normal, 0.0f));
    float4 _41;
    _41.x = _39.x;
    _41.y = _39.y;
    _41.z = _39.z;
    float4 _47;
    _47.x = uv0.x;
    _47.y = uv0.y;
    gl_Position = mul(worldViewProjection, float4(position, 1.0f));
    interpolant0 = _41;
    interpolant1 = _47;
}

SPIRV_Cross_Output main(SPIRV_Cross_Input stage_input)
{
    position = stage_input.position;
    normal = stage_input.normal;
    uv0 = stage_input.uv0;
    vert_main();
    SPIRV_Cross_Output stage_output;
    stage_output.gl_Position = gl_Position;
    stage_output.interpolant0 = interpolant0;
    stage_output.interpolant1 = interpolant1;
    return stage_output;
}
