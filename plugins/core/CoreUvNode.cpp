#include "plugins/core/CoreUvNode.h"

#include "mox/nodekit/NodeBindings.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"
#include "mox/shader/ShaderGraphGenerator.h"

using namespace Mox::Materials;

namespace {

constexpr PortRow output = {"read", "uv", 2};

} // namespace

const char* CoreUvNode::TypeName()
{
    return "CoreUv";
}

CoreUvNode::CoreUvNode() : GuiNode(TypeName())
{
    SetName("Uv");
    SetBackgroundColour(0.8f, 0.8f, 1.0f);

    Primary = DeclareBool(*this, "Primary",
                          "Primary: this box can be checked to hint this uv for use when "
                          "generating tangents and binormals. Most of the time this is not "
                          "necessary to set manually and should be left unchecked.",
                          false);

    AppendPort(OutputPorts, output);
}

CoreUvNode::~CoreUvNode() = default;

void CoreUvNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const ShaderType type = GetOutputPort(output.Name).GetShaderType();
    const ShaderNodeHandle parameter = ShaderNode::CreateVaryingParameter(GetName(), type);
    generator.AddNode(parameter);
    RegisterEdges(generator, parameter);
}

bool CoreUvNode::HasBinding()
{
    return true;
}

void CoreUvNode::CreateBindings(const boost::shared_ptr<Material>& material)
{
    AddStreamBinding(*this, StreamType::Uv, *material);
}
