#include "mox/nodekit/NodeFunction.h"

namespace Mox::Materials {

void AddInputs(ShaderFunctionBuilder& builder, const GuiNode& node, const UnconnectedValue& value)
{
    for (const GuiPort& port : node.InputPorts) {
        if (port.Connected)
            builder.AddInputPort(port);
        else
            builder.DeclareConstantForPort(port, value(port));
    }
}

void AddInputs(ShaderFunctionBuilder& builder, const GuiNode& node)
{
    AddInputs(builder, node, [](const GuiPort&) { return 0.0f; });
}

void AddOutputs(ShaderFunctionBuilder& builder, const GuiNode& node)
{
    for (const GuiPort& port : node.OutputPorts)
        builder.AddOutputPort(port);
}

void AddFunction(ShaderGraphGenerator& generator, GuiNode& node,
                 const ShaderFunctionBuilder& builder, ShaderLevel level, const char* name)
{
    const ShaderNodeHandle function = builder.Build(level, name);
    generator.AddNode(function);
    node.RegisterEdges(generator, function);
}

ShaderType NodeType(const GuiNode& node)
{
    return {node.Precision, node.ComponentCount, 1, 1};
}

} // namespace Mox::Materials
