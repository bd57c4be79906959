#version 450

layout(std140, binding = 2) uniform ObjectUniforms
{
	mat4 world;
	mat4 worldViewProjection;
} moxObject;

layout(location = 0) in vec3 position;
layout(location = 2) in vec3 normal;
layout(location = 8) in vec2 uv0;
layout(location = 0) out vec4 interpolant0;
layout(location = 1) out vec4 interpolant1;

// node "World Normal"
void worldNormalCode(vec3 in_normal, mat4 in_world, out vec3 out_value)
{
	out_value = (in_world * vec4(in_normal, 0.0)).xyz;
}

void main()
{
	interpolant0 = vec4(0.0);
	interpolant1 = vec4(0.0);
	vec3 worldNormal;
	worldNormalCode(normal, moxObject.world, worldNormal);
	interpolant0.xyz = worldNormal;
	interpolant1.xy = uv0;
	gl_Position = moxObject.worldViewProjection * vec4(position, 1.0);
}
