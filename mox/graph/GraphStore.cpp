#include "mox/graph/GraphStore.h"

#include "mox/document/PropertyText.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>

namespace Mox::Host {

using Materials::GuiEdge;
using Materials::GuiNode;
using Materials::GuiPort;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

namespace {

/// A map entry on its own, made in an empty map that keeps its buckets for the next one.
template <class Map>
typename Map::node_type MakeEntry(Map& empty, typename Map::key_type key, std::size_t value)
{
    return empty.extract(empty.emplace(std::move(key), value).first);
}

} // namespace

GraphStore::GraphStore(NodeMaker maker, std::string file)
    : _maker(std::move(maker)), _file(std::move(file))
{}

GraphStore::~GraphStore()
{
    for (std::size_t index = 0; index < _nodes.IndexEnd(); ++index) {
        if (!_nodes.Holds(index))
            continue;
        for (const auto& property : _nodes[index].Gui.Properties().Properties)
            property->Node.reset();
        _nodes[index].Gui = {}; // now, while the properties are in the cache
    }
}

void GraphStore::Reserve(std::size_t nodes, std::size_t edges)
{
    _index.reserve(nodes);
    _byGui.reserve(nodes);
    _isTouched.reserve(nodes);
    _touched.reserve(nodes);
    _edgeOfInput.reserve(edges);
}

std::optional<std::size_t> GraphStore::FindNode(const std::string& id) const
{
    const auto entry = _index.find(id);
    if (entry == _index.end())
        return std::nullopt;
    return entry->second;
}

std::string GraphStore::IdOf(const GuiNode* gui) const
{
    const auto entry = _byGui.find(gui);
    return entry == _byGui.end() ? std::string() : _nodes[entry->second].Id;
}

std::optional<std::size_t> GraphStore::FindEdge(std::size_t head, const std::string& headPort) const
{
    const auto entry = _edgeOfInput.find({head, headPort});
    if (entry == _edgeOfInput.end())
        return std::nullopt;
    return entry->second;
}

bool GraphStore::HasLooseEdge(std::size_t head, const std::string& headPort) const
{
    const auto edge = FindEdge(head, headPort);
    return edge && IsLoose(_edges[*edge]);
}

DocumentEdge GraphStore::Describe(const GraphEdge& edge) const
{
    return {_nodes[edge.Tail].Id, edge.Gui->TailPort, _nodes[edge.Head].Id,
            edge.Gui->HeadPort,   edge.Where.Line,    edge.Comments};
}

DocumentProperty GraphStore::Describe(const GuiProperty& property) const
{
    return {property.Name, property.Kind,
            property.Kind == GuiPropertyKind::Node ? IdOf(property.Node.get())
                                                   : FormatValue(property)};
}

std::size_t GraphStore::CreateNode(GraphNode&& node)
{
    const std::size_t index = _nodes.Add(std::move(node));
    try {
        GraphNode& added = _nodes[index];
        added.IdEntry = MakeEntry(_newId, added.Id, index);
        added.OutputUses.resize(added.Gui.OutputPorts().size());
        _byGui.emplace(added.Gui.Handle().get(), index);
        if (_isTouched.size() < _nodes.IndexEnd())
            _isTouched.resize(_nodes.IndexEnd());
        if (_touched.capacity() < _nodes.IndexEnd())
            _touched.reserve(2 * _nodes.IndexEnd());
        _order.Append(index);
    } catch (...) {
        ReleaseNode(index);
        throw;
    }
    return index;
}

void GraphStore::AttachNode(std::size_t index, std::size_t before)
{
    _index.insert(std::move(_nodes[index].IdEntry));
    _nodes.Attach(index, before);
    Touch(index);
}

void GraphStore::DetachNode(std::size_t index) noexcept
{
    _nodes[index].IdEntry = _index.extract(_nodes[index].Id);
    _nodes.Detach(index);
}

void GraphStore::ReleaseNode(std::size_t index) noexcept
{
    _byGui.erase(_nodes[index].Gui.Handle().get());
    _nodes.Release(index);
}

void GraphStore::RenameNode(std::size_t index, const std::string& newId)
{
    GraphNode& node = _nodes[index];
    std::string id = newId;
    std::string placeId = newId;
    std::string storedId = newId;
    std::string key = newId;
    auto entry = _index.extract(node.Id);
    entry.key() = std::move(key);
    _index.insert(std::move(entry));
    node.Id = std::move(id);
    node.Where.Node = std::move(placeId);
    node.Stored.Id = std::move(storedId);
}

void GraphStore::SetStoredProperties(std::size_t node, std::vector<DocumentProperty> properties)
{
    _nodes[node].Stored.Properties = std::move(properties);
}

void GraphStore::SetStoredValue(std::size_t node, std::size_t property, const std::string& value)
{
    _nodes[node].Stored.Properties[property].Value = value;
}

void GraphStore::SetRefusedPorts(std::size_t node, bool hasRefused) noexcept
{
    _nodes[node].HasRefusedPorts = hasRefused;
}

void GraphStore::RefreshReferences(std::size_t index)
{
    const GraphNode& node = _nodes[index];
    std::vector<std::size_t> targets;
    for (const auto& property : node.Gui.Properties().Properties) {
        if (property->Kind != GuiPropertyKind::Node || !property->Node)
            continue;
        const auto target = _byGui.find(property->Node.get());
        if (target != _byGui.end())
            targets.push_back(target->second);
    }
    for (const DocumentProperty& property : node.Stored.Properties) {
        if (property.Kind != GuiPropertyKind::Node ||
            node.Gui.Properties().Index.contains(property.Name))
            continue;
        if (const auto target = FindNode(property.Value))
            targets.push_back(*target);
    }
    _references.Set(index, targets);
}

void GraphStore::SetReferences(std::size_t index, const std::vector<std::size_t>& targets)
{
    _references.Set(index, targets);
}

std::vector<std::size_t> GraphStore::JoinPorts(std::size_t index)
{
    GraphNode& node = _nodes[index];
    for (GuiPort& port : node.Gui.InputPorts())
        port.Connected = false;
    for (GuiPort& port : node.Gui.OutputPorts())
        port.Connected = false;
    node.OutputUses.assign(node.Gui.OutputPorts().size(), 0);
    std::vector<std::size_t> lost;
    if (node.IsPlaceholder)
        return lost;
    for (const std::size_t link : _links.In(index)) {
        const std::int32_t port = node.Gui.FindInputPort(_edges[link].Gui->HeadPort);
        if (port < 0)
            lost.push_back(link);
        else
            node.Gui.InputPorts()[static_cast<std::size_t>(port)].Connected =
                !IsLoose(_edges[link]);
    }
    for (const std::size_t link : _links.Out(index)) {
        const std::int32_t port = node.Gui.FindOutputPort(_edges[link].Gui->TailPort);
        if (port < 0) {
            lost.push_back(link);
        } else if (!IsLoose(_edges[link])) {
            ++node.OutputUses[static_cast<std::size_t>(port)];
            node.Gui.OutputPorts()[static_cast<std::size_t>(port)].Connected = true;
        }
    }
    return lost;
}

std::size_t GraphStore::CreateEdge(std::size_t tail, const std::string& tailPort, std::size_t head,
                                   const std::string& headPort, Place where,
                                   DocumentComments comments)
{
    GraphEdge edge;
    edge.Gui = boost::make_shared<GuiEdge>();
    edge.Gui->Tail = _nodes[tail].Gui.Handle();
    edge.Gui->Head = _nodes[head].Gui.Handle();
    edge.Gui->TailPort = tailPort;
    edge.Gui->HeadPort = headPort;
    edge.Tail = tail;
    edge.Head = head;
    edge.IsLoose = _nodes[tail].IsPlaceholder || _nodes[head].IsPlaceholder;
    edge.Where = std::move(where);
    edge.Comments = std::move(comments);
    edge.SpareOut.emplace_back(edge.Gui);
    edge.SpareIn.emplace_back(edge.Gui);
    edge.OutEntry = edge.SpareOut.begin();
    edge.InEntry = edge.SpareIn.begin();
    const std::size_t index = _edges.Add(std::move(edge));
    try {
        _edges[index].InputEntry = MakeEntry(_newInput, GraphInput{head, headPort}, index);
        _links.Reserve(index, tail, head);
    } catch (...) {
        ReleaseEdge(index);
        throw;
    }
    return index;
}

void GraphStore::AttachEdge(std::size_t index, std::size_t before)
{
    GraphEdge& edge = _edges[index];
    _edgeOfInput.insert(std::move(edge.InputEntry));
    _links.Add(index, edge.Tail, edge.Head);
    _edges.Attach(index, before);
    if (!IsLoose(edge)) {
        // An edge lies in its spare lists or in those of the nodes, so it cannot be there already.
        auto& out = _nodes[edge.Tail].Gui.OutEdges();
        auto& in = _nodes[edge.Head].Gui.InEdges();
        out.splice(out.end(), edge.SpareOut);
        in.splice(in.end(), edge.SpareIn);
        CountUse(edge, true);
    }
    Touch(edge.Tail);
    Touch(edge.Head);
}

void GraphStore::DetachEdge(std::size_t index) noexcept
{
    GraphEdge& edge = _edges[index];
    edge.InputEntry = _edgeOfInput.extract(GraphInput{edge.Head, edge.Gui->HeadPort});
    _links.Remove(index);
    _edges.Detach(index);
    if (!IsLoose(edge)) {
        edge.SpareOut.splice(edge.SpareOut.end(), _nodes[edge.Tail].Gui.OutEdges(), edge.OutEntry);
        edge.SpareIn.splice(edge.SpareIn.end(), _nodes[edge.Head].Gui.InEdges(), edge.InEntry);
        CountUse(edge, false);
    }
    Touch(edge.Tail);
    Touch(edge.Head);
}

void GraphStore::ReleaseEdge(std::size_t index) noexcept
{
    _edges.Release(index);
}

void GraphStore::CountUse(GraphEdge& edge, bool isUsed) noexcept
{
    GraphNode& tail = _nodes[edge.Tail];
    const std::int32_t output = tail.Gui.FindOutputPort(edge.Gui->TailPort);
    if (output >= 0) {
        std::size_t& uses = tail.OutputUses[static_cast<std::size_t>(output)];
        isUsed ? ++uses : --uses;
        tail.Gui.OutputPorts()[static_cast<std::size_t>(output)].Connected = uses > 0;
    }
    const PluginNode& head = _nodes[edge.Head].Gui;
    const std::int32_t input = head.FindInputPort(edge.Gui->HeadPort);
    if (input >= 0)
        head.InputPorts()[static_cast<std::size_t>(input)].Connected = isUsed;
}

void GraphStore::Touch(std::size_t node) noexcept
{
    if (_isTouched[node])
        return;
    _isTouched[node] = true;
    _touched.push_back(node);
}

std::vector<std::size_t> GraphStore::TakeTouched()
{
    std::vector<std::size_t> touched = _touched;
    for (const std::size_t node : touched)
        _isTouched[node] = false;
    _touched.clear();
    return touched;
}

} // namespace Mox::Host
