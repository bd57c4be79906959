#include "mox/preview/NodeProbe.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/host/HostError.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <map>
#include <set>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiPort;

constexpr const char* inputPort = "in_value";
constexpr const char* outputPort = "out_value";
constexpr const char* parameterName = "probeColour";
constexpr std::int32_t parameterFlags = 0;

const ShaderType colourType(ComponentType::Float, 3, 1, 1);

bool HasNode(const MaterialDocument& document, const std::string& id)
{
    return std::any_of(document.Nodes.begin(), document.Nodes.end(),
                       [&](const DocumentNode& node) { return node.Id == id; });
}

/// The nodes that each node reads from or refers to.
std::multimap<std::string, std::string> FindSources(const MaterialDocument& document)
{
    std::multimap<std::string, std::string> sources;
    for (const DocumentEdge& edge : document.Edges)
        sources.emplace(edge.Head, edge.Tail);
    for (const DocumentNode& node : document.Nodes) {
        for (const DocumentProperty& property : node.Properties) {
            if (property.Kind == Materials::GuiPropertyKind::Node)
                sources.emplace(node.Id, property.Value);
        }
    }
    return sources;
}

const char* BodyOf(std::int32_t count)
{
    switch (count) {
    case 1:
        return "\tout_value = float3( in_value, in_value, in_value );\n";
    case 2:
        return "\tout_value = float3( in_value, 0.0 );\n";
    default:
        return "\tout_value = in_value.xyz;\n";
    }
}

class ProbeNode : public GuiNode
{
public:
    ProbeNode() : GuiNode(NodeProbe::TypeName())
    {
        InputPorts.emplace_back(inputPort, "value");
        InputPorts.back().SetPrecision(ComponentType::Float);
    }

    void GenerateShader(ShaderGraphGenerator& generator) override
    {
        const GuiPort& port = GetInputPort(inputPort);
        ShaderFunctionBuilder builder;
        builder.AddInputPort(port);
        builder.AddOutput(colourType, outputPort);
        builder.AppendCode(BodyOf(port.GetComponentCount()));
        const ShaderNodeHandle function = builder.Build(ShaderLevel::Automatic, "probeCode");
        const ShaderNodeHandle parameter =
            ShaderNode::CreateInterfaceParameter(parameterName, parameterFlags, colourType);
        generator.AddNode(function);
        generator.AddNode(parameter);
        generator.Connect(function, outputPort, parameter, "write");
        RegisterEdges(generator, function);
    }
};

} // namespace

ProbedOutput FindNodeOutput(const MaterialDocument& document, const std::string& text)
{
    if (HasNode(document, text))
        return {text, {}};
    const std::size_t dot = text.rfind('.');
    if (dot != text.npos && HasNode(document, text.substr(0, dot)))
        return {text.substr(0, dot), text.substr(dot + 1)};
    throw HostError(document.File, Compose("there is no node \"", text, "\""));
}

MaterialDocument CutUpstream(const MaterialDocument& document, const std::string& node)
{
    const auto sources = FindSources(document);
    std::set<std::string> kept{node};
    std::vector<std::string> open{node};
    while (!open.empty()) {
        const auto [begin, end] = sources.equal_range(open.back());
        open.pop_back();
        for (auto source = begin; source != end; ++source) {
            if (kept.insert(source->second).second)
                open.push_back(source->second);
        }
    }
    MaterialDocument part = document;
    erase_if(part.Nodes, [&](const DocumentNode& other) { return !kept.contains(other.Id); });
    // The node's own outputs lead to what is left out.
    erase_if(part.Edges, [&](const DocumentEdge& edge) { return !kept.contains(edge.Head); });
    return part;
}

const char* NodeProbe::TypeName()
{
    return "NodeProbe";
}

const char* NodeProbe::PortName()
{
    return inputPort;
}

PluginNode NodeProbe::Create(const Place& where)
{
    return PluginNode(boost::make_shared<ProbeNode>(), where);
}

Environment MakeProbeEnvironment(Environment environment)
{
    for (EnvironmentEntry& output : environment.Outputs) {
        if (output.Register->Type != ShaderRegisterType::FragmentColorOut)
            continue;
        output.When.clear();
        output.Inputs = {{"in_colour", colourType, EnvironmentSource::Value, parameterName, {}}};
        output.Body = "out_value = float4( in_colour, 1.0 );";
    }
    return environment;
}

} // namespace Mox::Host
