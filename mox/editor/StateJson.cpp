#include "mox/editor/StateJson.h"

#include "mox/document/PropertyText.h"
#include "mox/host/JsonObject.h"
#include "mox/host/PluginNode.h"
#include "mox/json/RecordJson.h"
#include "mox/layout/NodeShape.h"

#include <utility>

namespace Mox::Host {

namespace {

using Materials::GuiPort;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

Json DescribeColour(const float (&colour)[4])
{
    return Json(colour);
}

Json MakeNumbered(std::size_t number, Json record)
{
    Json json = MakeJsonObject();
    json["number"] = number;
    json["record"] = std::move(record);
    return json;
}

Json DescribePorts(const std::vector<GuiPort>& ports)
{
    Json list = Json::array();
    for (const GuiPort& port : ports) {
        const std::string precision = PrecisionOf(port);
        Json& object = list.emplace_back(MakeJsonObject());
        object["name"] = port.Name;
        object["label"] = port.Label.empty() ? port.Name : port.Label;
        object["components"] = port.CountKnown ? Json(port.ComponentCount) : Json();
        object["precision"] = precision.empty() ? Json() : Json(precision);
        object["connected"] = port.Connected;
        object["conflict"] = port.CountConflict;
    }
    return list;
}

Json DescribeProperty(const MaterialGraph& graph, const GuiProperty& property)
{
    Json json = MakeJsonObject();
    json["name"] = property.Name;
    json["kind"] = FormatKind(property.Kind);
    json["value"] = property.Kind == GuiPropertyKind::Node ? graph.IdOf(property.Node.get())
                                                           : FormatValue(property);
    json["editable"] = property.Editable;
    return json;
}

Json DescribeNode(const MaterialGraph& graph, std::size_t number)
{
    Json json = MakeNumbered(number, ToJson(graph.Document().Nodes[number]));
    if (!graph.Nodes().Holds(number))
        return json; // not even a placeholder could be created
    const GraphNode& node = graph.Nodes()[number];
    json["title"] = TitleOf(node);
    json["placeholder"] = node.IsPlaceholder;
    json["foreground"] = DescribeColour(node.Gui.ForegroundColour());
    json["background"] = DescribeColour(node.Gui.BackgroundColour());
    json["inputs"] = DescribePorts(node.Gui.InputPorts());
    json["outputs"] = DescribePorts(node.Gui.OutputPorts());
    Json properties = Json::array();
    for (const auto& property : node.Gui.Properties().Properties) {
        if (property->Visible)
            properties.push_back(DescribeProperty(graph, *property));
    }
    json["properties"] = std::move(properties);
    return json;
}

Json DescribeEdge(const MaterialGraph& graph, std::size_t number)
{
    return MakeNumbered(number, ToJson(graph.Document().Edges[number]));
}

Json DescribeAnnotation(const MaterialGraph& graph, std::size_t number)
{
    return MakeNumbered(number, ToJson(graph.Document().Annotations[number]));
}

void AddOtherParts(const MaterialDocument& document, Json& json)
{
    Json bindings = Json::array();
    for (const DocumentBinding& binding : document.Bindings)
        bindings.push_back(ToJson(binding));
    json["description"] = ToJson(document.Description);
    json["renderState"] = ToJson(document.RenderState);
    json["bindings"] = std::move(bindings);
}

} // namespace

Json DescribeNodes(const MaterialGraph& graph, const std::set<std::string>& ids)
{
    const MaterialDocument& document = graph.Document();
    Json nodes = Json::array();
    for (auto node = document.Nodes.begin(); node != document.Nodes.end(); ++node) {
        if (ids.contains(node->Id))
            nodes.push_back(DescribeNode(graph, node.Index()));
    }
    return nodes;
}

Json DescribeState(const MaterialGraph& graph)
{
    const MaterialDocument& document = graph.Document();
    const auto describeAll = [&](const auto& records, auto describe) {
        Json list = Json::array();
        for (auto record = records.begin(); record != records.end(); ++record)
            list.push_back(describe(graph, record.Index()));
        return list;
    };
    Json json = MakeJsonObject();
    json["nodes"] = describeAll(document.Nodes, DescribeNode);
    json["edges"] = describeAll(document.Edges, DescribeEdge);
    json["annotations"] = describeAll(document.Annotations, DescribeAnnotation);
    AddOtherParts(document, json);
    return json;
}

MaterialDocument ReadState(const JsonCursor& state)
{
    state.AllowOnly({"nodes", "edges", "annotations", "description", "renderState", "bindings"});
    MaterialDocument document;
    for (const JsonCursor& node : state.Member("nodes").Items()) {
        const JsonCursor record = node.Member("record");
        record.AllowOnly({"id", "type", "version", "properties", "comments", "lastComments"});
        document.Nodes.push_back(ReadNode(record));
    }
    for (const JsonCursor& edge : state.Member("edges").Items()) {
        const JsonCursor record = edge.Member("record");
        record.AllowOnly({"tail", "tailPort", "head", "headPort", "points", "comments"});
        document.Edges.push_back(ReadEdge(record));
    }
    for (const JsonCursor& annotation : state.Member("annotations").Items()) {
        const JsonCursor record = annotation.Member("record");
        record.AllowOnly({"id", "kind", "text", "x", "y", "width", "height", "colour", "comments"});
        document.Annotations.push_back(ReadAnnotation(record));
    }
    for (const JsonCursor& binding : state.Member("bindings").Items()) {
        binding.AllowOnly({"stream", "tag", "values", "comments"});
        document.Bindings.push_back(ReadBinding(binding));
    }
    document.Description = ReadDescription(state.Member("description"));
    document.RenderState = ReadRenderState(state.Member("renderState"));
    return document;
}

Json DescribeChanges(const MaterialGraph& graph, const ChangedRecords& records)
{
    const MaterialDocument& document = graph.Document();
    Json nodes = Json::array();
    Json goneNodes = Json::array();
    for (const std::size_t number : records.Nodes) {
        if (document.Nodes.Holds(number))
            nodes.push_back(DescribeNode(graph, number));
        else
            goneNodes.push_back(number);
    }
    Json edges = Json::array();
    Json goneEdges = Json::array();
    for (const std::size_t number : records.Edges) {
        if (document.Edges.Holds(number))
            edges.push_back(DescribeEdge(graph, number));
        else
            goneEdges.push_back(number);
    }
    Json json = {{"nodes", std::move(nodes)},
                 {"edges", std::move(edges)},
                 {"goneNodes", std::move(goneNodes)},
                 {"goneEdges", std::move(goneEdges)}};
    for (const std::size_t number : records.Annotations) {
        if (document.Annotations.Holds(number))
            json["annotations"].push_back(DescribeAnnotation(graph, number));
        else
            json["goneAnnotations"].push_back(number);
    }
    if (records.HasOthers)
        AddOtherParts(document, json);
    return json;
}

} // namespace Mox::Host
