#version 450

vec4 _28;

layout(binding = 0, std140) uniform VertexUniforms
{
    layout(row_major) mat4 worldViewProjection;
    layout(row_major) mat4 world;
} mox;

layout(location = 0) in vec3 position;
layout(location = 2) in vec3 normal;
layout(location = 8) in vec2 uv0;
layout(location = 0) out vec4 interpolant0;
layout(location = 1) out vec4 interpolant1;

void main()
{
    vec4 _39 = vec4(normal, 0.0) * mox.world;
    vec4 _41;
    _41.x = _39.x;
    _41.y = _39.y;
    _41.z = _39.z;
    vec4 _47;
    _47.x = uv0.x;
    _47.y = uv0.y;
    gl_Position = vec4(position, 1.0) * mox.worldViewProjection;
    interpolant0 = _41;
    interpolant1 = _47;
}

