#include "tests/support/NodeText.h"

#include "mox/Text.h"
#include "mox/bindings/Material.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/program/ShaderGraphText.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Failure.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

using namespace Mox;
using namespace Mox::Materials;

namespace {

bool Names(const std::string& list, const std::string& name)
{
    return list == "*" || (" " + list + " ").find(" " + name + " ") != std::string::npos;
}

std::string DescribePorts(const char* arrow, const std::vector<GuiPort>& ports)
{
    std::string text;
    for (const GuiPort& port : ports) {
        text += Compose(arrow, port.Name, " \"", port.Label, "\"");
        if (port.CountFixed)
            text += Compose(" x", port.ComponentCount);
        if (port.PrecisionFixed)
            text += Compose(" ", GetComponentName(port.Precision));
        text += "\n";
    }
    return text;
}

/// Adds an edge at each port that counts as connected, for the lifetime of the object.
class LooseEdges
{
public:
    explicit LooseEdges(GuiNode& node) : _node(node)
    {
        Clear(); // removes what a failed construction has left
        for (const GuiPort& port : node.InputPorts) {
            if (port.Connected)
                node.AddInEdge(Lay(port.Name, &GuiEdge::HeadPort));
        }
        for (const GuiPort& port : node.OutputPorts) {
            if (port.Connected)
                node.AddOutEdge(Lay(port.Name, &GuiEdge::TailPort));
        }
    }

    ~LooseEdges() { Clear(); }

    /// Describes the shader node that each edge leads to.
    std::string DescribeEnds(const ShaderGraphGenerator& generator) const
    {
        std::string text;
        for (const auto& edge : _edges) {
            const ShaderEdgeRecord& record = generator.EdgeMap.at(edge);
            for (std::size_t i = 0; i < record.Heads.size(); ++i)
                text += Compose("edge to ", edge->HeadPort, " ends at ",
                                EndOf(generator, record.Heads[i], record.HeadPorts[i]));
            if (record.Tail)
                text += Compose("edge from ", edge->TailPort, " starts at ",
                                EndOf(generator, record.Tail, record.TailPort));
        }
        return text;
    }

private:
    void Clear()
    {
        _node.InEdges.clear();
        _node.OutEdges.clear();
    }

    boost::shared_ptr<GuiEdge> Lay(const std::string& port, std::string GuiEdge::*end)
    {
        _edges.push_back(boost::make_shared<GuiEdge>());
        (*_edges.back()).*end = port;
        return _edges.back();
    }

    static std::string EndOf(const ShaderGraphGenerator& generator, const ShaderNodeHandle& node,
                             const std::string& port)
    {
        const auto& nodes = generator.Graph->Nodes;
        const auto position =
            std::distance(nodes.begin(), std::find(nodes.begin(), nodes.end(), node));
        return Compose("[", position + 1, "].", port, "\n");
    }

    GuiNode& _node;
    std::vector<boost::shared_ptr<GuiEdge>> _edges;
};

} // namespace

void ApplySettings(GuiNode& node, const std::string& settings)
{
    std::istringstream stream(settings);
    for (std::string setting; std::getline(stream >> std::ws, setting, ';');) {
        const std::size_t equals = setting.find('=');
        GuiProperty& property = *node.Properties->Get(setting.substr(0, equals));
        ASSERT_TRUE(Host::SetFromText(property, property.Kind, setting.substr(equals + 1)))
            << setting;
    }
}

void ResolveAlone(GuiNode& node, const std::string& connected, std::int32_t width,
                  ComponentType precision)
{
    for (GuiPort& port : node.InputPorts) {
        port.Connected = Names(connected, port.Name);
        if (port.Connected && !port.CountFixed) {
            port.ComponentCount = width;
            port.CountKnown = true;
        }
    }
    node.ResolveComponentCounts();
    for (GuiPort& port : node.OutputPorts) {
        port.Connected = Names(connected, port.Name);
        port.Precision = precision;
        port.PrecisionKnown = true;
    }
    node.ResolvePrecisions();
}

std::string DescribeState(const GuiNode& node)
{
    constexpr std::size_t standardProperties = 8;
    std::string hidden;
    std::string locked;
    const auto& properties = node.Properties->Properties;
    for (std::size_t i = standardProperties; i < properties.size(); ++i) {
        hidden += properties[i]->Visible ? "" : Compose(" \"", properties[i]->Name, "\"");
        locked += properties[i]->Editable ? "" : Compose(" \"", properties[i]->Name, "\"");
    }
    return Compose(DescribePorts("  in  ", node.InputPorts),
                   DescribePorts("  out ", node.OutputPorts), hidden.empty() ? "" : "  hidden",
                   hidden, hidden.empty() ? "" : "\n", locked.empty() ? "" : "  locked", locked,
                   locked.empty() ? "" : "\n");
}

std::string DescribeShader(GuiNode& node)
{
    ShaderGraph graph;
    return DescribeShader(node, graph);
}

std::string DescribeShader(GuiNode& node, ShaderGraph& graph)
{
    const std::size_t nodeCount = graph.Nodes.size();
    ShaderGraphGenerator generator(graph);
    const LooseEdges edges(node);
    const std::string failure = FailureOf([&] { node.GenerateShader(generator); });
    if (failure != "no failure") {
        EXPECT_TRUE(graph.Nodes.size() == nodeCount && generator.EdgeMap.empty()) << failure;
        return Compose("failure: ", failure, "\n");
    }
    return Host::FormatShaderGraph(graph) + edges.DescribeEnds(generator);
}

std::string FormatBindings(const Material& material)
{
    return Host::FormatBindings(
        std::vector<Host::PluginBinding>(material.Bindings.begin(), material.Bindings.end()));
}

std::string DescribeBindings(GuiNode& node)
{
    const auto material = boost::make_shared<Material>();
    node.CreateBindings(material);
    EXPECT_EQ(node.HasBinding(), !material->Bindings.empty());
    return material->Bindings.empty() ? "no binding\n" : FormatBindings(*material);
}

std::map<std::string, ShaderType> SurfaceValues()
{
    constexpr std::pair<const char*, int> columns[] = {
        {"facingRatio", 1},  {"time", 1},          {"frame", 1},          {"worldPosition", 3},
        {"worldNormal", 3},  {"viewDirection", 3}, {"objectPosition", 3}, {"objectNormal", 3},
        {"worldTangent", 3}, {"worldBinormal", 3}, {"shadingNormal", 3},  {"eyeDistance", 1},
        {"screenUv", 2},     {"faceSign", 1},      {"lightDirection", 3},
    };
    std::map<std::string, ShaderType> values;
    for (const auto& [name, count] : columns)
        values.emplace(name, ShaderType(ComponentType::Float, count, 1, 1));
    return values;
}
