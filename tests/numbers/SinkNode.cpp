#include "tests/numbers/SinkNode.h"

#include "mox/Text.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

using namespace Mox::Materials;

namespace {

constexpr std::int32_t width = 4;
constexpr const char* outputName = "out_value";

} // namespace

SinkNode::SinkNode(ComponentType precision) : GuiNode("Sink")
{
    for (std::int32_t i = 0; i < width; ++i) {
        InputPorts.emplace_back(Compose("in_", i), "");
        InputPorts.back().SetPrecision(precision);
    }
}

SinkNode::SinkNode(const ShaderType& type) : SinkNode(type.Component)
{
    for (GuiPort& port : InputPorts)
        port.SetComponentCount(type.Columns);
}

void SinkNode::ResolveComponentCounts()
{
    // Each input keeps its own component count; the counts need not agree.
}

void SinkNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const ShaderType numbers(ComponentType::Float, width, 1, 1);
    ShaderFunctionBuilder builder;
    std::string parts;
    std::int32_t count = 0;
    for (const GuiPort& port : InputPorts) {
        if (!port.Connected)
            continue;
        builder.AddInputPort(port);
        parts += Compose(parts.empty() ? "" : ", ", port.Name);
        count += port.GetComponentCount();
    }
    for (; count < width; ++count)
        parts += ", 0.0";
    builder.AddOutput(numbers, outputName);
    builder.AppendCode(Compose("\t", outputName, " = float4( ", parts, " );\n"));
    const ShaderNodeHandle function = builder.Build(ShaderLevel::Fragment, "sinkCode");
    const ShaderNodeHandle value = ShaderNode::CreateInterfaceParameter("numbers", 0, numbers);
    generator.AddNode(function);
    generator.AddNode(value);
    generator.Connect(function, outputName, value, "write");
    RegisterEdges(generator, function);
}
