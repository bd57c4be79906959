#include "mox/host/MaterialGraph.h"

#include "mox/Text.h"
#include "mox/host/LibraryCall.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiEdge;
using Materials::GuiNode;
using Materials::GuiPort;

MaterialGraph::~MaterialGraph()
{
    for (const Node& node : _nodes) {
        for (const auto& property : node.Gui->Properties->Properties)
            property->Node.reset();
    }
}

bool MaterialGraph::IsLoose(const Edge& edge) const
{
    return _nodes[edge.Tail].IsPlaceholder || _nodes[edge.Head].IsPlaceholder;
}

void MaterialGraph::AddNode(const std::string& id, const boost::shared_ptr<GuiNode>& node,
                            bool isPlaceholder, const Place& where)
{
    if (_index.contains(id))
        throw HostError(where, "another node has this id already");
    _nodes.push_back({id, node, isPlaceholder, where});
    try {
        _index.emplace(id, _nodes.size() - 1);
    } catch (...) {
        _nodes.pop_back();
        throw;
    }
}

void MaterialGraph::Connect(const std::string& tail, const std::string& tailPort,
                            const std::string& head, const std::string& headPort,
                            const Place& where)
{
    Edge edge{boost::make_shared<GuiEdge>(), FindNode(tail, where), FindNode(head, where), where};
    const Node& tailNode = _nodes[edge.Tail];
    const Node& headNode = _nodes[edge.Head];
    edge.Gui->Tail = tailNode.Gui;
    edge.Gui->Head = headNode.Gui;
    edge.Gui->TailPort = tailPort;
    edge.Gui->HeadPort = headPort;
    if (IsLoose(edge)) {
        _edges.push_back(std::move(edge));
        return;
    }
    if (edge.Tail == edge.Head)
        throw HostError(where, Compose("node \"", tail, "\" cannot feed itself"));

    const auto placeOf = [&](const std::string& node) {
        return Place{where.File, where.Line, node, {}};
    };
    GuiPort& output = CallLibrary(
        placeOf(tail), [&]() -> GuiPort& { return tailNode.Gui->GetOutputPort(tailPort); });
    GuiPort& input = CallLibrary(
        placeOf(head), [&]() -> GuiPort& { return headNode.Gui->GetInputPort(headPort); });
    if (input.Connected) {
        throw HostError(where, Compose("input port \"", headPort, "\" of node \"", head,
                                       "\" has an edge already, so output port \"", tailPort,
                                       "\" of node \"", tail, "\" cannot feed it too"));
    }

    _edges.push_back(edge);
    try {
        tailNode.Gui->AddOutEdge(edge.Gui);
        try {
            headNode.Gui->AddInEdge(edge.Gui);
        } catch (...) {
            tailNode.Gui->OutEdges.pop_back();
            throw;
        }
    } catch (...) {
        _edges.pop_back();
        throw;
    }
    output.Connected = true;
    input.Connected = true;
}

std::size_t MaterialGraph::FindNode(const std::string& id, const Place& where) const
{
    const auto entry = _index.find(id);
    if (entry == _index.end())
        throw HostError(where, Compose("there is no node \"", id, "\""));
    return entry->second;
}

} // namespace Mox::Host
