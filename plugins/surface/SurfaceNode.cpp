#include "plugins/surface/SurfaceNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "plugins/surface/icons/Surface.xpm"
#include "plugins/surface/icons/SurfacePbr.xpm"

#include <utility>
#include <vector>

using namespace Mox::Materials;

namespace {

constexpr auto h = ComponentType::Half;
constexpr auto f = ComponentType::Float;

// Normals are in tangent space, offsets in object space.
constexpr SurfaceInput inputs[] = {
    {{"in_colour", "colour", 3, h}, "surfaceColour"},
    {{"in_alpha", "alpha", 1, h}, "surfaceAlpha"},
    {{"in_normal", "normal", 3, h}, "surfaceNormal"},
    {{"in_emission", "emission", 3, h}, "surfaceEmission"},
    {{"in_offset", "offset", 3, f}, "surfaceOffset"},
};

constexpr SurfaceInput physicalInputs[] = {
    {{"in_colour", "base colour", 3, h}, "surfaceColour"},
    {{"in_metalness", "metalness", 1, h}, "surfaceMetalness"},
    {{"in_roughness", "roughness", 1, h}, "surfaceRoughness"},
    {{"in_normal", "normal", 3, h}, "surfaceNormal"},
    {{"in_occlusion", "occlusion", 1, h}, "surfaceOcclusion"},
    {{"in_emission", "emission", 3, h}, "surfaceEmission"},
    {{"in_opacity", "opacity", 1, h}, "surfaceAlpha"},
    {{"in_specular", "specular", 1, h}, "surfaceSpecular"},
    {{"in_clearcoat", "clearcoat", 1, h}, "surfaceClearcoat"},
    {{"in_clearcoatRoughness", "clearcoat roughness", 1, h}, "surfaceClearcoatRoughness"},
    {{"in_offset", "offset", 3, f}, "surfaceOffset"},
};

constexpr SurfaceKind kinds[] = {
    {"Surface", "Surface", Surface_xpm, inputs, nullptr},
    {"SurfacePbr", "Physical Surface", SurfacePbr_xpm, physicalInputs, "surfacePbr"},
};

constexpr std::int32_t flags = 0;

} // namespace

std::span<const SurfaceKind> SurfaceNode::Kinds()
{
    return kinds;
}

SurfaceNode::SurfaceNode(const SurfaceKind& kind) : GuiNode(kind.TypeName), _kind(kind)
{
    SetName(kind.Label);
    SetBackgroundColour(1.0f, 0.7f, 0.3f);
    Name->Visible = false;

    for (const SurfaceInput& input : _kind.Inputs)
        AppendPort(InputPorts, input.Port);
}

void SurfaceNode::GenerateShader(ShaderGraphGenerator& generator)
{
    RequireOneKind(generator);
    std::vector<std::pair<const char*, ShaderNodeHandle>> writes;
    for (const SurfaceInput& input : _kind.Inputs) {
        const GuiPort& port = GetInputPort(input.Port.Name);
        if (!port.Connected)
            continue;
        RequireUnwritten(generator, input.Parameter);
        writes.emplace_back(input.Port.Name, ShaderNode::CreateInterfaceParameter(
                                                 input.Parameter, flags, port.GetShaderType()));
    }
    for (const auto& [inputPort, parameter] : writes) {
        generator.AddNode(parameter);
        RecordHeads(generator, inputPort, parameter);
    }
    if (_kind.Marker)
        WriteMarker(generator);
}

/// Rejects a surface of a different kind: nodes without a marker may each write a part of the
/// surface, but the host shades it as one kind.
void SurfaceNode::RequireOneKind(const ShaderGraphGenerator& generator) const
{
    for (const SurfaceKind& kind : kinds) {
        if (kind.Marker)
            RequireUnwritten(generator, kind.Marker);
        if (!_kind.Marker)
            continue;
        for (const SurfaceInput& input : kind.Inputs)
            RequireUnwritten(generator, input.Parameter);
    }
}

void SurfaceNode::RequireUnwritten(const ShaderGraphGenerator& generator,
                                   const char* parameter) const
{
    if (generator.Graph->HasInterfaceNode(parameter, flags)) {
        throw ShaderError(Compose(Describe(), ": \"", parameter,
                                  "\" is already written; only one surface node is allowed"));
    }
}

/// Writes the marker. Nothing reads it, so it is not part of any program.
void SurfaceNode::WriteMarker(ShaderGraphGenerator& generator) const
{
    const ShaderType type(f, 1, 1, 1);
    ShaderFunctionBuilder builder;
    builder.AddOutput(type, "out_value");
    builder.AppendCode("\tout_value = 1.0;\n");
    const ShaderNodeHandle function = builder.Build(ShaderLevel::Automatic, "markerCode");
    const ShaderNodeHandle marker = ShaderNode::CreateInterfaceParameter(_kind.Marker, flags, type);
    generator.AddNode(function);
    generator.AddNode(marker);
    generator.Connect(function, "out_value", marker, "write");
}

void SurfaceNode::RecordHeads(ShaderGraphGenerator& generator, const std::string& inputPort,
                              const ShaderNodeHandle& parameter)
{
    for (const auto& entry : InEdges) {
        const boost::shared_ptr<GuiEdge> edge(entry);
        if (edge->HeadPort == inputPort)
            generator.RecordEdgeHead(edge, parameter, "write");
    }
}
