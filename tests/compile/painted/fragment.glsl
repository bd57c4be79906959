#version 450

layout(binding = 1, std140) uniform FragmentUniforms
{
    vec3 tint;
    float gloss;
    vec3 lights[2];
} mox;

layout(binding = 0) uniform sampler2D paintTexture;
layout(binding = 1) uniform sampler1D rampTexture;

layout(location = 0) in vec4 interpolant0;
layout(location = 1) in vec4 interpolant1;
layout(location = 0) out vec4 fragmentColour0;

void main()
{
    vec3 _54 = texture(paintTexture, interpolant1.xy).xyz;
    vec3 _71 = texture(rampTexture, clamp(dot(interpolant0.xyz, mox.lights[0] + mox.lights[1]), 0.0, 1.0)).xyz;
    vec3 _74 = mix(pow((_54 + vec3(0.054999999701976776123046875)) * vec3(0.947867333889007568359375), vec3(2.400000095367431640625)), _54 * vec3(0.077399380505084991455078125), lessThanEqual(_54, vec3(0.040449999272823333740234375))) * mox.tint;
    fragmentColour0 = vec4(mix(_71, _74, lessThan(_74, _71)) + vec3(mox.gloss), 1.0);
}

