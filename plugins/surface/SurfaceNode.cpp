#include "plugins/surface/SurfaceNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <utility>
#include <vector>

using namespace Mox::Materials;

namespace {

struct SurfaceInput
{
    PortRow Port;
    const char* Parameter; ///< name of the interface parameter that the port writes
};

constexpr SurfaceInput inputs[] = {
    {{"in_colour", "colour", 3, ComponentType::Half}, "surfaceColour"},
    {{"in_alpha", "alpha", 1, ComponentType::Half}, "surfaceAlpha"},
    {{"in_normal", "normal", 3, ComponentType::Half}, "surfaceNormal"}, // in tangent space
    {{"in_emission", "emission", 3, ComponentType::Half}, "surfaceEmission"},
    {{"in_offset", "offset", 3, ComponentType::Float}, "surfaceOffset"}, // in object space
};

constexpr std::int32_t flags = 0;

} // namespace

const char* SurfaceNode::TypeName()
{
    return "Surface";
}

SurfaceNode::SurfaceNode() : GuiNode(TypeName())
{
    SetBackgroundColour(1.0f, 0.7f, 0.3f);
    Name->Visible = false;

    for (const SurfaceInput& input : inputs)
        AppendPort(InputPorts, input.Port);
}

void SurfaceNode::GenerateShader(ShaderGraphGenerator& generator)
{
    std::vector<std::pair<const char*, ShaderNodeHandle>> writes;
    for (const SurfaceInput& input : inputs) {
        const GuiPort& port = GetInputPort(input.Port.Name);
        if (!port.Connected)
            continue;
        if (generator.Graph->HasInterfaceNode(input.Parameter, flags)) {
            throw ShaderError(Compose(Describe(), ": \"", input.Parameter,
                                      "\" is written already: a material has one surface node"));
        }
        writes.emplace_back(input.Port.Name, ShaderNode::CreateInterfaceParameter(
                                                 input.Parameter, flags, port.GetShaderType()));
    }
    for (const auto& [inputPort, parameter] : writes) {
        generator.AddNode(parameter);
        RecordHeads(generator, inputPort, parameter);
    }
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
