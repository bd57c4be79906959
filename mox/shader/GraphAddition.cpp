#include "mox/shader/GraphAddition.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

using Mox::Materials::Compose;

void GraphAddition::AddNode(const ShaderNodeHandle& node)
{
    if (node->Kind == ShaderNodeKind::InterfaceParameter) {
        const bool isNew = !_graph.HasInterfaceNode(node->Name, node->Flags) &&
                           _interfaceNodes.try_emplace({node->Name, node->Flags}, node).second;
        if (!isNew)
            throw ShaderError(Compose(node->Describe(), " already exists in graph"));
    }
    if (HasNode(node))
        throw ShaderError("node for addition already exists in graph");
    _nodeSet.insert(node);
    _nodes.push_back(node);
}

void GraphAddition::AddEdge(const ShaderEdgeHandle& edge)
{
    const ShaderNodeHandle tail = edge->Tail.lock();
    if (!tail)
        throw ShaderError("edge tail node has been deleted");
    const ShaderNodeHandle head = edge->Head.lock();
    if (!head)
        throw ShaderError("edge head node has been deleted");
    if (tail == head)
        throw ShaderError("edge head and tail are the same node");
    if (_graph.EdgeSet.contains(edge))
        throw ShaderError("edge for addition already exists in graph");
    if (!HasNode(tail))
        throw ShaderError("tail node on edge for addition does not exist in graph");
    if (!HasNode(head))
        throw ShaderError("head node on edge for addition does not exist in graph");
    tail->RequireNewOutEdge(edge);
    head->RequireNewInEdge(edge);

    _edgeSet.insert(edge);
    _edges.push_back(edge);
    _outEntries.emplace_back(edge);
    _inEntries.emplace_back(edge);
}

void GraphAddition::Commit() noexcept
{
    for (const ShaderEdgeHandle& edge : _edges) {
        auto& outEdges = edge->Tail.lock()->OutEdges;
        outEdges.splice(outEdges.end(), _outEntries, _outEntries.begin());
        auto& inEdges = edge->Head.lock()->InEdges;
        inEdges.splice(inEdges.end(), _inEntries, _inEntries.begin());
    }
    _graph.Edges.splice(_graph.Edges.end(), _edges);
    _graph.EdgeSet.merge(_edgeSet);
    _graph.Nodes.splice(_graph.Nodes.end(), _nodes);
    _graph.NodeSet.merge(_nodeSet);
    _graph.InterfaceNodes.merge(_interfaceNodes);
}

bool GraphAddition::HasNode(const ShaderNodeHandle& node) const
{
    return _graph.NodeSet.contains(node) || _nodeSet.contains(node);
}
