#include "mox/preview/NodeProbe.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/document/UnknownNode.h"
#include "mox/host/HostError.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiPort;

constexpr const char* inputPort = "in_value";
constexpr const char* outputPort = "out_value";
constexpr std::string_view typePrefix = "NodeProbe";
constexpr const char* choiceUniform = "moxProbe"; ///< not used by any environment
constexpr std::int32_t parameterFlags = 0;

const ShaderType colourType(ComponentType::Float, 3, 1, 1);

bool HasNode(const MaterialDocument& document, const std::string& id)
{
    return std::any_of(document.Nodes.begin(), document.Nodes.end(),
                       [&](const DocumentNode& node) { return node.Id == id; });
}

/// Returns, for each node, the nodes that it reads from or refers to.
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

/// Returns the name of the interface parameter that a probe writes.
std::string ParameterOf(std::string_view number)
{
    return Compose("probeColour", number);
}

class ProbeNode : public GuiNode
{
public:
    explicit ProbeNode(const std::string& type)
        : GuiNode(type), _parameter(ParameterOf(std::string_view(type).substr(typePrefix.size())))
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
            ShaderNode::CreateInterfaceParameter(_parameter, parameterFlags, colourType);
        generator.AddNode(function);
        generator.AddNode(parameter);
        generator.Connect(function, outputPort, parameter, "write");
        RegisterEdges(generator, function);
    }

private:
    const std::string _parameter;
};

} // namespace

ProbedOutput FindNodeOutput(const MaterialDocument& document, const std::string& text)
{
    if (HasNode(document, text))
        return {text, {}};
    const std::size_t dot = text.rfind('.');
    if (dot != text.npos && HasNode(document, text.substr(0, dot)))
        return {text.substr(0, dot), text.substr(dot + 1)};
    throw HostError(document.File, UnknownNode(text.substr(0, dot), document));
}

MaterialDocument CutUpstream(const MaterialDocument& document,
                             const std::vector<ProbedOutput>& nodes)
{
    const auto sources = FindSources(document);
    std::set<std::string> kept;
    for (const ProbedOutput& output : nodes)
        kept.insert(output.Node);
    std::vector<std::string> open(kept.begin(), kept.end());
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
    // Edges from the kept nodes to removed ones are dropped.
    erase_if(part.Edges, [&](const DocumentEdge& edge) { return !kept.contains(edge.Head); });
    return part;
}

std::string NodeProbe::TypeName(std::size_t number)
{
    return Compose(typePrefix, number);
}

const char* NodeProbe::PortName()
{
    return inputPort;
}

const char* NodeProbe::ChoiceUniform()
{
    return choiceUniform;
}

PluginNode NodeProbe::Create(const std::string& type, const Place& where)
{
    // A plug-in may have types with the same prefix.
    const bool isProbe =
        type.starts_with(typePrefix) && type.size() > typePrefix.size() &&
        type.find_first_not_of("0123456789", typePrefix.size()) == std::string::npos;
    if (!isProbe)
        return {};
    return PluginNode(boost::make_shared<ProbeNode>(type), where);
}

Environment MakeProbeEnvironment(Environment environment, std::size_t probes)
{
    const ShaderType numberType(ComponentType::Float, 1, 1, 1);
    std::vector<EnvironmentInput> inputs{
        {"in_probe", numberType, EnvironmentSource::Uniform, choiceUniform, {}}};
    std::string body = "float3 colour = float3( 0.0 );\n";
    for (std::size_t i = 0; i < probes; ++i) {
        const std::string name = Compose("in_colour", i);
        inputs.push_back(
            {name, colourType, EnvironmentSource::Value, ParameterOf(std::to_string(i)), {}});
        body += Compose("if( in_probe == ", i, ".0 ) colour = ", name, ";\n");
    }
    body += "out_value = float4( colour, 1.0 );\n";
    environment.Uniforms.push_back({choiceUniform, numberType, UniformRate::Frame});
    for (EnvironmentEntry& output : environment.Outputs) {
        if (output.Register->Type != ShaderRegisterType::FragmentColorOut)
            continue;
        output.When.clear();
        output.Inputs = inputs;
        output.Body = body;
    }
    return environment;
}

} // namespace Mox::Host
