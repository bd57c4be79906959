#include "fuzz/shader/GraphModel.h"

#include "mox/Text.h"

#include <algorithm>

using Mox::Materials::Compose;

namespace {

bool Contains(const std::vector<int>& numbers, int number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

const ShaderPort* FindPort(const std::vector<ShaderPort>& ports, const std::string& name)
{
    for (const ShaderPort& port : ports) {
        if (port.Name == name)
            return &port;
    }
    return nullptr;
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

Answer WorldModel::CheckNewEntry(const std::vector<int>& list, int edge,
                                 const std::string& which) const
{
    for (const int entry : list) {
        if (!IsEdgeAlive(entry))
            return {"bad_weak_ptr"};
        if (entry == edge)
            return {which + "-edge entry for addition already exists on node"};
    }
    return {};
}

Answer WorldModel::AddEntry(std::vector<int>& list, int edge, const std::string& which) const
{
    Answer answer = CheckNewEntry(list, edge, which);
    if (answer.Failure.empty())
        list.push_back(edge);
    return answer;
}

Answer WorldModel::InsertNode(GraphModel& graph, int number)
{
    const NodeModel& node = Node(number);
    const bool hasKey = node.Kind == ShaderNodeKind::InterfaceParameter;
    if (hasKey && graph.InterfaceNodes.contains({node.Name, node.Flags}))
        return {Describe(number) + " already exists in graph"};
    if (Contains(graph.Nodes, number))
        return {"node for addition already exists in graph"};
    if (hasKey)
        graph.InterfaceNodes[{node.Name, node.Flags}] = number;
    graph.Nodes.push_back(number);
    return {};
}

Answer WorldModel::CheckEdge(const GraphModel& graph, int number) const
{
    const EdgeModel& edge = Edge(number);
    if (!IsNodeAlive(edge.Tail))
        return {"edge tail node has been deleted"};
    if (!IsNodeAlive(edge.Head))
        return {"edge head node has been deleted"};
    if (edge.Tail == edge.Head)
        return {"edge head and tail are the same node"};
    if (Contains(graph.Edges, number))
        return {"edge for addition already exists in graph"};
    if (!Contains(graph.Nodes, edge.Tail))
        return {"tail node on edge for addition does not exist in graph"};
    if (!Contains(graph.Nodes, edge.Head))
        return {"head node on edge for addition does not exist in graph"};
    Answer out = CheckNewEntry(Node(edge.Tail).OutEdges, number, "out");
    if (!out.Failure.empty())
        return out;
    return CheckNewEntry(Node(edge.Head).InEdges, number, "in");
}

Answer WorldModel::InsertEdge(GraphModel& graph, int number)
{
    Answer answer = CheckEdge(graph, number);
    if (!answer.Failure.empty())
        return answer;
    const EdgeModel& edge = Edge(number);
    graph.Edges.push_back(number);
    Node(edge.Tail).OutEdges.push_back(number);
    Node(edge.Head).InEdges.push_back(number);
    return {};
}

Answer WorldModel::ConnectPorts(GraphModel& graph, int tail, const std::string& tailPort, int head,
                                const std::string& headPort)
{
    Edges.push_back({tail, tailPort, head, headPort, false});
    Answer answer = InsertEdge(graph, static_cast<int>(Edges.size()) - 1);
    if (!answer.Failure.empty())
        Edges.pop_back();
    return answer;
}

Answer WorldModel::FindInterfaceNode(const GraphModel& graph, const GraphModel::Key& key) const
{
    const auto entry = graph.InterfaceNodes.find(key);
    if (entry != graph.InterfaceNodes.end())
        return {"", entry->second};
    if (std::find(graph.Providers.begin(), graph.Providers.end(), key.first) !=
        graph.Providers.end())
        return {"", -1, true};
    return {Compose("failed to find interface node \"", key.first, "\" (flags=", key.second, ")")};
}

Answer WorldModel::GetInterfaceNode(const GraphModel& graph, const GraphModel::Key& key,
                                    const ShaderType& expected) const
{
    Answer answer = FindInterfaceNode(graph, key);
    if (!answer.Failure.empty())
        return answer;
    const ShaderType& type = answer.IsProvided ? providedType : Node(answer.Node).Type;
    if (type == expected)
        return answer;
    const std::string found = answer.IsProvided
                                  ? Compose("interface parameter \"", key.first, "\" (",
                                            type.Format(), ",flags=", key.second, ")")
                                  : Describe(answer.Node);
    return {Compose(found, " expected to have type ", expected.Format())};
}

Answer WorldModel::AddNode(GraphModel& graph, int number)
{
    if (graph.NodeMap.contains(number))
        return {Describe(number) + " already added to the graph generator"};
    const NodeModel& node = Node(number);
    int standing = number;
    if (node.Kind == ShaderNodeKind::InterfaceParameter &&
        graph.InterfaceNodes.contains({node.Name, node.Flags})) {
        Answer found = GetInterfaceNode(graph, {node.Name, node.Flags}, node.Type);
        if (!found.Failure.empty())
            return found;
        standing = found.Node;
    } else {
        Answer inserted = InsertNode(graph, number);
        if (!inserted.Failure.empty())
            return inserted;
    }
    graph.NodeMap[number] = standing;
    return {};
}

Answer WorldModel::GetShaderNode(const GraphModel& graph, int node) const
{
    const auto entry = graph.NodeMap.find(node);
    if (entry == graph.NodeMap.end())
        return {Describe(node) + " not yet been added to the graph generator"};
    return {"", entry->second};
}

Answer WorldModel::Connect(GraphModel& graph, int tail, const std::string& tailPort, int head,
                           const std::string& headPort)
{
    const Answer from = GetShaderNode(graph, tail);
    if (!from.Failure.empty())
        return from;
    const Answer to = GetShaderNode(graph, head);
    if (!to.Failure.empty())
        return to;
    const auto* output = FindPort(Node(from.Node).Outputs, tailPort);
    if (!output)
        return {Compose(Describe(from.Node), ": output port \"", tailPort, "\" does not exist")};
    const auto* input = FindPort(Node(to.Node).Inputs, headPort);
    if (!input)
        return {Compose(Describe(to.Node), ": input port \"", headPort, "\" does not exist")};
    const ShaderType a = output->Type;
    const ShaderType b = input->Type;
    if (a == b)
        return ConnectPorts(graph, from.Node, tailPort, to.Node, headPort);
    if (a.Rows != 1 || b.Rows != 1 || a.ArrayLength != 1 || b.ArrayLength != 1 ||
        (a.Columns != b.Columns && a.Columns != 1))
        return {Compose("cannot convert ", a.Format(), " to ", b.Format())};
    return Convert(graph, {from.Node, tailPort, to.Node, headPort}, a, b);
}

/// All or nothing, so both ends are looked at before the first change.
Answer WorldModel::Convert(GraphModel& graph, const EdgeModel& ends, const ShaderType& from,
                           const ShaderType& to)
{
    const Answer out = CheckNewEntry(Node(ends.Tail).OutEdges, -1, "");
    if (!out.Failure.empty())
        return out;
    const Answer in = CheckNewEntry(Node(ends.Head).InEdges, -1, "");
    if (!in.Failure.empty())
        return in;
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
    ConnectPorts(graph, ends.Tail, ends.TailPort, number, "in_value");
    ConnectPorts(graph, number, "out_value", ends.Head, ends.HeadPort);
    return {};
}
