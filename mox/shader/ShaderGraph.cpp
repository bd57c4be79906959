#include "mox/shader/ShaderGraph.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <boost/smart_ptr/make_shared.hpp>

using Mox::Materials::Compose;

namespace {

/// Keeps list and set of the graph's nodes or edges in agreement: the list entry is made before the
/// set may fail, and is only moved, which cannot fail, after the set has taken the handle.
template <class Handle>
void AddToBoth(std::list<Handle>& list, std::set<Handle>& set, const Handle& handle)
{
    std::list<Handle> entry{handle};
    set.insert(set.end(), handle); // new objects lie behind older ones more often than not
    list.splice(list.end(), entry);
}

} // namespace

ShaderGraph::ShaderGraph() = default;

ShaderGraph::~ShaderGraph() = default;

void ShaderGraph::InsertNode(const ShaderNodeHandle& node)
{
    auto key = InterfaceNodes.end();
    if (node->Kind == ShaderNodeKind::InterfaceParameter) {
        const auto [entry, inserted] =
            InterfaceNodes.try_emplace(InterfaceKey(node->Name, node->Flags), node);
        if (!inserted)
            throw ShaderError(Compose(node->Describe(), " already exists in graph"));
        key = entry;
    }
    try {
        if (NodeSet.contains(node))
            throw ShaderError("node for addition already exists in graph");
        AddToBoth(Nodes, NodeSet, node);
    } catch (...) {
        if (key != InterfaceNodes.end())
            InterfaceNodes.erase(key);
        throw;
    }
}

void ShaderGraph::ConnectPorts(const ShaderNodeHandle& tail, const std::string& tailPort,
                               const ShaderNodeHandle& head, const std::string& headPort, bool flag)
{
    InsertEdge(boost::make_shared<ShaderEdge>(tail, tailPort, head, headPort, flag));
}

void ShaderGraph::InsertEdge(const ShaderEdgeHandle& edge)
{
    const ShaderNodeHandle tail = edge->Tail.lock();
    if (!tail)
        throw ShaderError("edge tail node has been deleted");
    const ShaderNodeHandle head = edge->Head.lock();
    if (!head)
        throw ShaderError("edge head node has been deleted");
    if (tail == head)
        throw ShaderError("edge head and tail are the same node");
    if (EdgeSet.contains(edge))
        throw ShaderError("edge for addition already exists in graph");
    if (!NodeSet.contains(tail))
        throw ShaderError("tail node on edge for addition does not exist in graph");
    if (!NodeSet.contains(head))
        throw ShaderError("head node on edge for addition does not exist in graph");

    AddToBoth(Edges, EdgeSet, edge);
    try {
        tail->AddOutEdge(edge);
        try {
            head->AddInEdge(edge);
        } catch (...) {
            tail->OutEdges.pop_back();
            throw;
        }
    } catch (...) {
        EdgeSet.erase(edge);
        Edges.pop_back();
        throw;
    }
}

bool ShaderGraph::HasInterfaceNode(const std::string& name, std::int32_t flags) const
{
    return InterfaceNodes.contains(InterfaceKey(name, flags));
}

ShaderNodeHandle ShaderGraph::FindInterfaceNode(const std::string& name, std::int32_t flags)
{
    const auto entry = InterfaceNodes.find(InterfaceKey(name, flags));
    if (entry != InterfaceNodes.end())
        return entry->second;
    for (auto provider = Providers.rbegin(); provider != Providers.rend(); ++provider) {
        if (ShaderNodeHandle node = (*provider)->ProvideInterfaceNode(name, flags, *this))
            return node;
    }
    throw ShaderError(Compose("failed to find interface node \"", name, "\" (flags=", flags, ")"));
}

ShaderNodeHandle ShaderGraph::GetInterfaceNode(const std::string& name, std::int32_t flags,
                                               const ShaderType& expected)
{
    ShaderNodeHandle node = FindInterfaceNode(name, flags);
    if (node->Type != expected) {
        throw ShaderError(Compose(node->Describe(), " expected to have type ", expected.Format()));
    }
    return node;
}
