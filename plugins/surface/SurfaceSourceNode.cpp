#include "plugins/surface/SurfaceSourceNode.h"

#include "mox/shader/ShaderGraphGenerator.h"
#include "plugins/surface/icons/SurfaceBinormal.xpm"
#include "plugins/surface/icons/SurfaceBumpedNormal.xpm"
#include "plugins/surface/icons/SurfaceEyeDistance.xpm"
#include "plugins/surface/icons/SurfaceFaceSign.xpm"
#include "plugins/surface/icons/SurfaceFacingRatio.xpm"
#include "plugins/surface/icons/SurfaceFrame.xpm"
#include "plugins/surface/icons/SurfaceLightDirection.xpm"
#include "plugins/surface/icons/SurfaceObjectNormal.xpm"
#include "plugins/surface/icons/SurfaceObjectPosition.xpm"
#include "plugins/surface/icons/SurfaceScreenUv.xpm"
#include "plugins/surface/icons/SurfaceTangent.xpm"
#include "plugins/surface/icons/SurfaceTime.xpm"
#include "plugins/surface/icons/SurfaceViewDirection.xpm"
#include "plugins/surface/icons/SurfaceWorldNormal.xpm"
#include "plugins/surface/icons/SurfaceWorldPosition.xpm"

using namespace Mox::Materials;

namespace {

constexpr auto f = ComponentType::Float;

// Directions have unit length. The facing ratio is the cosine between the normal and the view
// direction: 1 where the surface faces the camera, 0 at its silhouette.
// clang-format off
constexpr SurfaceSource sources[] = {
    {"SurfaceFacingRatio", "Facing Ratio", SurfaceFacingRatio_xpm,
     "facingRatio", {"read", "facing", 1, f}},
    {"SurfaceTime", "Time", SurfaceTime_xpm,
     "time", {"read", "seconds", 1, f}},
    {"SurfaceFrame", "Frame Number", SurfaceFrame_xpm,
     "frame", {"read", "frame", 1, f}},
    {"SurfaceWorldPosition", "World Position", SurfaceWorldPosition_xpm,
     "worldPosition", {"read", "position", 3, f}},
    {"SurfaceWorldNormal", "World Normal", SurfaceWorldNormal_xpm,
     "worldNormal", {"read", "normal", 3, f}},
    {"SurfaceViewDirection", "View Direction", SurfaceViewDirection_xpm,
     "viewDirection", {"read", "to eye", 3, f}},
    {"SurfaceObjectPosition", "Object Position", SurfaceObjectPosition_xpm,
     "objectPosition", {"read", "position", 3, f}},
    {"SurfaceObjectNormal", "Object Normal", SurfaceObjectNormal_xpm,
     "objectNormal", {"read", "normal", 3, f}},
    {"SurfaceTangent", "Tangent", SurfaceTangent_xpm,
     "worldTangent", {"read", "tangent", 3, f}},
    {"SurfaceBinormal", "Binormal", SurfaceBinormal_xpm,
     "worldBinormal", {"read", "binormal", 3, f}},
    {"SurfaceBumpedNormal", "Bumped Normal", SurfaceBumpedNormal_xpm,
     "shadingNormal", {"read", "normal", 3, f}},
    {"SurfaceEyeDistance", "Eye Distance", SurfaceEyeDistance_xpm,
     "eyeDistance", {"read", "distance", 1, f}},
    {"SurfaceScreenUv", "Screen Uv", SurfaceScreenUv_xpm,
     "screenUv", {"read", "uv", 2, f}},
    {"SurfaceFaceSign", "Face Sign", SurfaceFaceSign_xpm,
     "faceSign", {"read", "sign", 1, f}},
    {"SurfaceLightDirection", "Light Direction", SurfaceLightDirection_xpm,
     "lightDirection", {"read", "to light", 3, f}},
};
// clang-format on

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
    // A queried provider adds its parameter to the graph, so that the parameter made here is merged
    // with it.
    generator.Graph->GetInterfaceNode(_source.Parameter, flags, type);
    const ShaderNodeHandle parameter =
        ShaderNode::CreateInterfaceParameter(_source.Parameter, flags, type);
    generator.AddNode(parameter);
    RegisterEdges(generator, parameter);
}
