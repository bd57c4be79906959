#include "mox/preview/Background.h"

#include <algorithm>

namespace Mox::Host {

namespace {

constexpr const char* vertexText =
    "void main( in float3 position : ATTR0, out float4 clipPosition : POSITION,\n"
    "\tout float height : TEXCOORD0 )\n"
    "{\n"
    "\tclipPosition = float4( position, 1.0 );\n"
    "\theight = 0.5 + 0.5*position.y;\n"
    "}\n";

constexpr const char* fragmentText =
    "uniform float3 skyColour;\n"
    "uniform float3 groundColour;\n"
    "void main( in float height : TEXCOORD0, out float4 pixelColour : COLOR0 )\n"
    "{\n"
    "\tpixelColour = float4( lerp( groundColour, skyColour, smoothstep( 0.0, 1.0, height ) ), 1.0 "
    ");\n"
    "}\n";

StageProgram MakeStage(const std::string& text)
{
    const auto lines = std::count(text.begin(), text.end(), '\n');
    return {text, std::vector<LineOrigin>(static_cast<std::size_t>(lines))};
}

ProgramParameter MakeParameter(ParameterKind kind, const std::string& name, bool isInVertex)
{
    return {kind, name,  name,       ShaderType(ComponentType::Float, 3, 1, 1),
            {},   false, isInVertex, !isInVertex};
}

} // namespace

Mesh MakeBackgroundMesh()
{
    Mesh mesh;
    mesh.Name = "background";
    mesh.Positions = {{-1.0f, -1.0f, 0.0f}, {3.0f, -1.0f, 0.0f}, {-1.0f, 3.0f, 0.0f}};
    mesh.Indices = {0, 1, 2};
    return mesh;
}

CgProgram MakeBackgroundProgram()
{
    CgProgram program;
    program.Vertex = MakeStage(vertexText);
    program.Fragment = MakeStage(fragmentText);
    program.Plan.Parameters = {MakeParameter(ParameterKind::VertexStream, "position", true),
                               MakeParameter(ParameterKind::Uniform, "skyColour", false),
                               MakeParameter(ParameterKind::Uniform, "groundColour", false)};
    for (const ProgramParameter& parameter : program.Plan.Parameters) {
        if (parameter.Kind == ParameterKind::Uniform)
            program.Plan.EnvironmentUniforms.push_back(
                {parameter.Name, parameter.Type, UniformRate::Frame});
    }
    return program;
}

} // namespace Mox::Host
