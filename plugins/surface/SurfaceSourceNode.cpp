#include "plugins/surface/SurfaceSourceNode.h"

#include "mox/shader/ShaderGraphGenerator.h"

using namespace Mox::Materials;

namespace {

constexpr auto f = ComponentType::Float;

// Directions have unit length. The facing ratio is the cosine between normal and view direction: 1
// where the surface faces the eye, 0 at its outline.
constexpr SurfaceSource sources[] = {
    {"SurfaceFacingRatio", "Facing Ratio", "facingRatio", {"read", "facing", 1, f}},
    {"SurfaceTime", "Time", "time", {"read", "seconds", 1, f}},
    {"SurfaceFrame", "Frame Number", "frame", {"read", "frame", 1, f}},
    {"SurfaceWorldPosition", "World Position", "worldPosition", {"read", "position", 3, f}},
    {"SurfaceWorldNormal", "World Normal", "worldNormal", {"read", "normal", 3, f}},
    {"SurfaceViewDirection", "View Direction", "viewDirection", {"read", "to eye", 3, f}},
};

constexpr std::int32_t flags = 0;

} // namespace

std::span<const SurfaceSource> SurfaceSourceNode::Sources()
{
    return sources;
}

SurfaceSourceNode::SurfaceSourceNode(const SurfaceSource& source)
    : GuiNode(source.TypeName), _source(source)
{
    SetName(source.Label);
    SetBackgroundColour(0.6f, 0.9f, 0.9f);
    Name->Visible = false;

    AppendPort(OutputPorts, source.Output);
}

void SurfaceSourceNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const ShaderType type = GetOutputPort(_source.Output.Name).GetShaderType();
    // A provider enters its parameter in the graph when asked, so that this node's own folds into
    // it.
    generator.Graph->GetInterfaceNode(_source.Parameter, flags, type);
    const ShaderNodeHandle parameter =
        ShaderNode::CreateInterfaceParameter(_source.Parameter, flags, type);
    generator.AddNode(parameter);
    RegisterEdges(generator, parameter);
}
