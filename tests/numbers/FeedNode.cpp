#include "tests/numbers/FeedNode.h"

#include "mox/Text.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

using namespace Mox::Materials;

namespace {

constexpr const char* outputPort = "read";

} // namespace

FeedNode::FeedNode(std::int32_t count) : GuiNode("Feed")
{
    OutputPorts.emplace_back(outputPort, "");
    OutputPorts.back().SetComponentCount(count);
}

FeedNode::FeedNode(const ShaderType& type) : FeedNode(type.Columns)
{
    OutputPorts.back().SetPrecision(type.Component);
}

void FeedNode::GenerateShader(ShaderGraphGenerator& generator)
{
    const ShaderType type = GetOutputPort(outputPort).GetShaderType();
    const bool isStreamType =
        type.Component == ComponentType::Float || type.Component == ComponentType::Half;
    const ShaderType streamType(isStreamType ? type.Component : ComponentType::Float, type.Columns,
                                1, 1);
    const ShaderNodeHandle stream = ShaderNode::CreateVaryingParameter(GetName(), streamType);
    generator.AddNode(stream);
    if (isStreamType) {
        RegisterEdges(generator, stream);
        return;
    }
    ShaderFunctionBuilder builder;
    builder.AddInput(streamType, "in_stream");
    builder.AddOutput(type, outputPort);
    builder.AppendCode(Compose("\t", outputPort, " = ", type.Format(), "( in_stream );\n"));
    const ShaderNodeHandle cast = builder.Build(ShaderLevel::Fragment, "castCode");
    generator.AddNode(cast);
    generator.Connect(stream, "read", cast, "in_stream");
    RegisterEdges(generator, cast);
}
