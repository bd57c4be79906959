#include "mox/shader/ShaderGraphGenerator.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/shader/GraphAddition.h"
#include "mox/shader/ShaderFunctionBuilder.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

using Mox::Materials::Compose;

namespace {

constexpr const char* adapterInput = "in_value";
constexpr const char* adapterOutput = "out_value";

bool IsScalarOrVector(const ShaderType& type)
{
    return type.Rows == 1 && type.ArrayLength == 1;
}

bool Converts(const ShaderType& from, const ShaderType& to)
{
    return IsScalarOrVector(from) && IsScalarOrVector(to) &&
           (from.Columns == to.Columns || from.Columns == 1);
}

ShaderNodeHandle BuildAdapter(const ShaderType& from, const ShaderType& to)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(from, adapterInput);
    builder.AddOutput(to, adapterOutput);
    if (from.Columns == to.Columns) {
        builder.AppendCode("\tout_value = in_value;\n");
    } else {
        builder.AppendCode("\tout_value = in_value.");
        for (std::int32_t column = 0; column < to.Columns; ++column)
            builder.AppendCode("x");
        builder.AppendCode(";\n");
    }
    return builder.Build(ShaderLevel::Automatic, "promoteAndSplat");
}

} // namespace

ShaderGraphGenerator::ShaderGraphGenerator(ShaderGraph& graph) : Graph(&graph)
{}

ShaderGraphGenerator::~ShaderGraphGenerator() = default;

void ShaderGraphGenerator::AddNode(const ShaderNodeHandle& node)
{
    const auto [entry, inserted] = NodeMap.try_emplace(node, node);
    if (!inserted)
        throw ShaderError(Compose(node->Describe(), " already added to the graph generator"));
    try {
        if (node->Kind == ShaderNodeKind::InterfaceParameter &&
            Graph->HasInterfaceNode(node->Name, node->Flags))
            entry->second = Graph->GetInterfaceNode(node->Name, node->Flags, node->Type);
        else
            Graph->InsertNode(node);
    } catch (...) {
        NodeMap.erase(entry);
        throw;
    }
}

ShaderNodeHandle ShaderGraphGenerator::GetShaderNode(const ShaderNodeHandle& node) const
{
    const auto entry = NodeMap.find(node);
    if (entry == NodeMap.end())
        throw ShaderError(Compose(node->Describe(), " not yet been added to the graph generator"));
    return entry->second;
}

void ShaderGraphGenerator::Connect(const ShaderNodeHandle& tail, const std::string& tailPort,
                                   const ShaderNodeHandle& head, const std::string& headPort)
{
    const ShaderNodeHandle from = GetShaderNode(tail);
    const ShaderNodeHandle to = GetShaderNode(head);
    const ShaderType fromType = from->GetOutputPort(tailPort).Type;
    const ShaderType toType = to->GetInputPort(headPort).Type;
    if (fromType == toType) {
        Graph->ConnectPorts(from, tailPort, to, headPort, false);
        return;
    }
    if (!Converts(fromType, toType)) {
        throw ShaderError(Compose("cannot convert ", fromType.Format(), " to ", toType.Format()));
    }
    const ShaderNodeHandle adapter = BuildAdapter(fromType, toType);
    GraphAddition addition(*Graph);
    addition.AddNode(adapter);
    addition.AddEdge(boost::make_shared<ShaderEdge>(from, tailPort, adapter, adapterInput, false));
    addition.AddEdge(boost::make_shared<ShaderEdge>(adapter, adapterOutput, to, headPort, false));
    addition.Commit();
}

void ShaderGraphGenerator::RecordEdgeTail(const GuiEdgeHandle& edge, const ShaderNodeHandle& node,
                                          const std::string& port)
{
    std::string portCopy = port; // copied first, so that a failure does not leave a partial record
    ShaderEdgeRecord& record = EdgeMap[edge];
    record.Tail = node;
    record.TailPort = std::move(portCopy);
}

void ShaderGraphGenerator::RecordEdgeHead(const GuiEdgeHandle& edge, const ShaderNodeHandle& node,
                                          const std::string& port)
{
    const auto [entry, isNew] = EdgeMap.try_emplace(edge);
    ShaderEdgeRecord& record = entry->second;
    const std::size_t count = record.Heads.size();
    try {
        record.Heads.push_back(node);
        record.HeadPorts.push_back(port);
    } catch (...) {
        record.Heads.resize(count);
        if (isNew)
            EdgeMap.erase(entry);
        throw;
    }
}
