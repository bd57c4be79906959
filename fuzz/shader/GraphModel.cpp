#include "fuzz/shader/GraphModel.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <boost/smart_ptr/bad_weak_ptr.hpp>

#include <algorithm>

using Mox::Materials::Compose;

namespace {

void RefuseIf(bool isWrong, const std::string& message)
{
    if (isWrong)
        throw ShaderError(message);
}

bool Contains(const std::vector<int>& numbers, int number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool HasKey(const NodeModel& node)
{
    return node.Kind == ShaderNodeKind::InterfaceParameter;
}

} // namespace

std::string WorldModel::Describe(int number) const
{
    const NodeModel& node = Node(number);
    switch (node.Kind) {
    case ShaderNodeKind::InterfaceParameter:
        return Compose("interface parameter \"", node.Name, "\" (", node.Type.Format(),
                       ",flags=", node.Flags, ")");
    case ShaderNodeKind::VaryingParameter:
        return Compose("varying parameter \"", node.Name, "\" (", node.Type.Format(), ")");
    case ShaderNodeKind::UniformParameter:
        return Compose("uniform parameter \"", node.Name, "\" (", node.Type.Format(), ")");
    case ShaderNodeKind::InterpolantParameter:
        return Compose("interpolant parameter (", node.Type.Format(), ")");
    default:
        return Compose("function \"", node.Name, "\" (1/1/*)");
    }
}

bool WorldModel::IsNodeAlive(int number) const
{
    if (Node(number).IsHeld)
        return true;
    for (const GraphModel& graph : Graphs) {
        if (Contains(graph.Nodes, number))
            return true;
        for (const auto& [given, standing] : graph.NodeMap) {
            if (given == number || standing == number)
                return true;
        }
        for (const auto& [edge, record] : graph.EdgeMap) {
            if (record.Tail == number || Contains(record.Heads, number))
                return true;
        }
    }
    return false;
}

bool WorldModel::IsEdgeAlive(int number) const
{
    return Edge(number).IsHeld ||
           std::any_of(Graphs.begin(), Graphs.end(),
                       [number](const GraphModel& graph) { return Contains(graph.Edges, number); });
}

void WorldModel::CheckNewEntry(const std::vector<int>& list, int number,
                               const std::string& which) const
{
    for (const int entry : list) {
        if (!IsEdgeAlive(entry))
            throw boost::bad_weak_ptr();
        RefuseIf(entry == number, which + "-edge entry for addition already exists on node");
    }
}

void WorldModel::AddEntry(std::vector<int>& list, int edge, const std::string& which) const
{
    CheckNewEntry(list, edge, which);
    list.push_back(edge);
}

void WorldModel::InsertNode(GraphModel& graph, int number)
{
    const NodeModel& node = Node(number);
    RefuseIf(HasKey(node) && graph.InterfaceNodes.contains({node.Name, node.Flags}),
             Describe(number) + " already exists in graph");
    RefuseIf(Contains(graph.Nodes, number), "node for addition already exists in graph");
    if (HasKey(node))
        graph.InterfaceNodes[{node.Name, node.Flags}] = number;
    graph.Nodes.push_back(number);
}

void WorldModel::CheckEdge(const GraphModel& graph, const EdgeModel& edge, int number) const
{
    RefuseIf(!IsNodeAlive(edge.Tail), "edge tail node has been deleted");
    RefuseIf(!IsNodeAlive(edge.Head), "edge head node has been deleted");
    RefuseIf(edge.Tail == edge.Head, "edge head and tail are the same node");
    RefuseIf(Contains(graph.Edges, number), "edge for addition already exists in graph");
    RefuseIf(!Contains(graph.Nodes, edge.Tail),
             "tail node on edge for addition does not exist in graph");
    RefuseIf(!Contains(graph.Nodes, edge.Head),
             "head node on edge for addition does not exist in graph");
    CheckNewEntry(Node(edge.Tail).OutEdges, number, "out");
    CheckNewEntry(Node(edge.Head).InEdges, number, "in");
}

void WorldModel::LayEdge(GraphModel& graph, int number)
{
    graph.Edges.push_back(number);
    Node(Edge(number).Tail).OutEdges.push_back(number);
    Node(Edge(number).Head).InEdges.push_back(number);
}

void WorldModel::InsertEdge(GraphModel& graph, int number)
{
    CheckEdge(graph, Edge(number), number);
    LayEdge(graph, number);
}

void WorldModel::ConnectPorts(GraphModel& graph, const EdgeModel& edge)
{
    const int number = static_cast<int>(Edges.size());
    CheckEdge(graph, edge, number);
    Edges.push_back(edge);
    LayEdge(graph, number);
}

Found WorldModel::FindInterfaceNode(GraphModel& graph, const GraphModel::Key& key) const
{
    const auto entry = graph.InterfaceNodes.find(key);
    if (entry != graph.InterfaceNodes.end())
        return {entry->second, {}};
    for (auto provider = graph.Providers.rbegin(); provider != graph.Providers.rend(); ++provider) {
        ++provider->Asked;
        if (provider->Name == key.first)
            return {-1, provider->Type};
    }
    throw ShaderError(
        Compose("failed to find interface node \"", key.first, "\" (flags=", key.second, ")"));
}

Found WorldModel::GetInterfaceNode(GraphModel& graph, const GraphModel::Key& key,
                                   const ShaderType& expected) const
{
    const Found found = FindInterfaceNode(graph, key);
    const ShaderType type = found.Provided ? *found.Provided : Node(found.Node).Type;
    RefuseIf(type != expected,
             Compose("interface parameter \"", key.first, "\" (", type.Format(),
                     ",flags=", found.Provided ? key.second : Node(found.Node).Flags,
                     ") expected to have type ", expected.Format()));
    return found;
}

void WorldModel::AddNode(GraphModel& graph, int number)
{
    RefuseIf(graph.NodeMap.contains(number),
             Describe(number) + " already added to the graph generator");
    const NodeModel& node = Node(number);
    int standing = number;
    if (HasKey(node) && graph.InterfaceNodes.contains({node.Name, node.Flags}))
        standing = GetInterfaceNode(graph, {node.Name, node.Flags}, node.Type).Node;
    else
        InsertNode(graph, number);
    graph.NodeMap[number] = standing;
}

Found WorldModel::GetShaderNode(const GraphModel& graph, int node) const
{
    const auto entry = graph.NodeMap.find(node);
    RefuseIf(entry == graph.NodeMap.end(),
             Describe(node) + " not yet been added to the graph generator");
    return {entry->second, {}};
}

ShaderType WorldModel::TypeOfPort(int node, const std::string& port, const std::string& which) const
{
    for (const ShaderPort& own : which == "input" ? Node(node).Inputs : Node(node).Outputs) {
        if (own.Name == port)
            return own.Type;
    }
    throw ShaderError(Compose(Describe(node), ": ", which, " port \"", port, "\" does not exist"));
}

void WorldModel::Connect(GraphModel& graph, const EdgeModel& given)
{
    EdgeModel ends = given;
    ends.Tail = GetShaderNode(graph, given.Tail).Node;
    ends.Head = GetShaderNode(graph, given.Head).Node;
    const ShaderType from = TypeOfPort(ends.Tail, ends.TailPort, "output");
    const ShaderType to = TypeOfPort(ends.Head, ends.HeadPort, "input");
    if (from == to)
        return ConnectPorts(graph, ends);
    RefuseIf(from.Rows != 1 || to.Rows != 1 || from.ArrayLength != 1 || to.ArrayLength != 1 ||
                 (from.Columns != to.Columns && from.Columns != 1),
             Compose("cannot convert ", from.Format(), " to ", to.Format()));
    Convert(graph, ends, from, to);
}

/// All or nothing, so both ends are looked at before the first change.
void WorldModel::Convert(GraphModel& graph, const EdgeModel& ends, const ShaderType& from,
                         const ShaderType& to)
{
    CheckNewEntry(Node(ends.Tail).OutEdges, -1, "");
    CheckNewEntry(Node(ends.Head).InEdges, -1, "");
    NodeModel adapter;
    adapter.Name = "promoteAndSplat";
    adapter.Inputs = {{"in_value", from}};
    adapter.Outputs = {{"out_value", to}};
    adapter.Code = "\tout_value = in_value";
    if (from.Columns != to.Columns)
        adapter.Code += "." + std::string(static_cast<std::size_t>(to.Columns), 'x');
    adapter.Code += ";\n";
    adapter.IsHeld = false;
    const int number = static_cast<int>(Nodes.size());
    Nodes.push_back(std::move(adapter));
    InsertNode(graph, number);
    ConnectPorts(graph, {ends.Tail, ends.TailPort, number, "in_value", false});
    ConnectPorts(graph, {number, "out_value", ends.Head, ends.HeadPort, false});
}
