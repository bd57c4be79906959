#include "mox/graph/GraphEdit.h"

#include "mox/Text.h"
#include "mox/graph/EdgeRules.h"
#include "mox/graph/GraphOrder.h"
#include "mox/graph/StoredNode.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

/// What the host alone keeps on a node; no class builds its ports by it.
constexpr const char* hostProperties[] = {"BindingIndex", "PositionX", "PositionY"};

bool ShapesPorts(const std::string& property)
{
    return std::find(std::begin(hostProperties), std::end(hostProperties), property) ==
           std::end(hostProperties);
}

std::string FormatEnds(const DocumentEdge& edge)
{
    return Compose("from output port \"", edge.TailPort, "\" of node \"", edge.Tail,
                   "\" to input port \"", edge.HeadPort, "\" of node \"", edge.Head, "\"");
}

} // namespace

void GraphEdit::operator()(const AddNode& step)
{
    const Place where{_graph.File(), step.Node.Line, step.Node.Id, {}};
    if (step.Node.Id.empty())
        throw HostError(where, "a node needs an id");
    if (_graph.FindNode(step.Node.Id))
        throw HostError(where, "another node has this id already");
    const std::size_t before = step.Before.empty() ? GraphStore::None : FindNode(step.Before);

    GraphNode node;
    node.Id = step.Node.Id;
    const MadeNode made = _graph.Maker().Make(step.Node.Type, where);
    node.Gui = made.Gui;
    node.IsPlaceholder = made.IsPlaceholder;
    node.Where = where;
    node.Stored = step.Node;
    ProblemList problems;
    LoadStored(_graph, node, step.Node, step.Values, problems);
    problems.ThrowFirstError();
    made.Gui.UpdatePorts(where);

    const std::size_t index = _graph.CreateNode(std::move(node));
    _rollback.Add([this, index] { _graph.ReleaseNode(index); });
    _graph.AttachNode(index, before);
    _rollback.Add([this, index] { _graph.DetachNode(index); });
    RefreshReferences(index);
    _inverse.emplace_back(RemoveNode{step.Node.Id});
}

void GraphEdit::operator()(const RemoveNode& step)
{
    const std::size_t index = FindNode(step.Id);
    while (!_graph.Links().In(index).empty())
        DropEdge(_graph.Links().In(index).back());
    while (!_graph.Links().Out(index).empty())
        DropEdge(_graph.Links().Out(index).back());

    SetProperties emptied;
    for (const std::size_t referrer : _graph.References().Referrers(index)) {
        const GraphNode& node = _graph.Nodes()[referrer];
        const auto& bag = node.Gui.Properties();
        for (const auto& property : bag.Properties) {
            if (property->Kind == GuiPropertyKind::Node &&
                property->Node == _graph.Nodes()[index].Gui.Handle())
                emptied.Settings.push_back({node.Id, {property->Name, GuiPropertyKind::Node, {}}});
        }
        for (const DocumentProperty& property : node.Stored.Properties) {
            if (property.Kind == GuiPropertyKind::Node && property.Value == step.Id &&
                !bag.Index.contains(property.Name))
                emptied.Settings.push_back({node.Id, {property.Name, GuiPropertyKind::Node, {}}});
        }
    }
    if (!emptied.Settings.empty())
        (*this)(emptied);

    AddNode inverse = DescribeNode(_graph, index);
    const std::vector<std::size_t> targets = _graph.References().Targets(index);
    _graph.SetReferences(index, {});
    _rollback.Add([this, index, targets] { _graph.SetReferences(index, targets); });
    const std::size_t before = _graph.Nodes().Next(index);
    _graph.DetachNode(index);
    _rollback.Add([this, index, before] { _graph.AttachNode(index, before); });
    _removedNodes.push_back(index);
    _inverse.emplace_back(std::move(inverse));
}

void GraphEdit::operator()(const RenameNode& step)
{
    const std::size_t index = FindNode(step.Id);
    if (step.NewId == step.Id)
        return;
    if (step.NewId.empty())
        throw HostError(PlaceOf(step.Id), "a node needs an id");
    if (_graph.FindNode(step.NewId)) {
        throw HostError(PlaceOf(step.Id),
                        Compose("another node has the id \"", step.NewId, "\" already"));
    }
    // References that only the document knows are kept as texts.
    for (const std::size_t referrer : _graph.References().Referrers(index)) {
        const GraphNode& node = _graph.Nodes()[referrer];
        for (std::size_t i = 0; i < node.Stored.Properties.size(); ++i) {
            const DocumentProperty& property = node.Stored.Properties[i];
            if (property.Kind == GuiPropertyKind::Node && property.Value == step.Id &&
                !node.Gui.Properties().Index.contains(property.Name))
                WriteStored(referrer, i, step.NewId);
        }
    }
    _graph.RenameNode(index, step.NewId);
    _rollback.Add([this, index, id = step.Id] { _graph.RenameNode(index, id); });
    _inverse.emplace_back(RenameNode{step.NewId, step.Id});
}

void GraphEdit::operator()(const AddEdge& step)
{
    const DocumentEdge& edge = step.Edge;
    const Place where{_graph.File(), edge.Line, {}, {}};
    const std::size_t tail = FindNode(edge.Tail);
    const std::size_t head = FindNode(edge.Head);
    std::size_t before = GraphStore::None;
    if (!step.BeforeHead.empty()) {
        const auto next = _graph.FindEdge(FindNode(step.BeforeHead), step.BeforeHeadPort);
        if (!next) {
            throw HostError(where, Compose("no edge feeds input port \"", step.BeforeHeadPort,
                                           "\" of node \"", step.BeforeHead, "\""));
        }
        before = *next;
    }
    ProblemList problems;
    if (CheckEdge(_graph, tail, edge.TailPort, head, edge.HeadPort, where, problems)) {
        const auto circle = _graph.Order().Admit(_graph.Links(), tail, head);
        if (!circle.empty())
            RefuseCircle(_graph, circle, where, problems);
    }
    problems.ThrowFirstError();

    const std::size_t index =
        _graph.CreateEdge(tail, edge.TailPort, head, edge.HeadPort, where, edge.Comments);
    _rollback.Add([this, index] { _graph.ReleaseEdge(index); });
    _graph.AttachEdge(index, before);
    _rollback.Add([this, index] { _graph.DetachEdge(index); });
    _inverse.emplace_back(RemoveEdge{edge});
}

void GraphEdit::operator()(const RemoveEdge& step)
{
    const std::size_t tail = FindNode(step.Edge.Tail);
    const std::size_t head = FindNode(step.Edge.Head);
    const auto edge = _graph.FindEdge(head, step.Edge.HeadPort);
    if (!edge || _graph.Edges()[*edge].Tail != tail ||
        _graph.Edges()[*edge].Gui->TailPort != step.Edge.TailPort) {
        throw HostError({_graph.File(), 0, {}, {}},
                        Compose("there is no edge ", FormatEnds(step.Edge)));
    }
    DropEdge(*edge);
}

void GraphEdit::operator()(const SetProperties& step)
{
    Snapshots snapshots;
    std::vector<PropertySetting> old;
    for (const auto& [node, property] : step.Settings)
        SetProperty(FindNode(node), property, snapshots, old);

    std::vector<std::size_t> changed;
    for (const auto& [node, snapshot] : snapshots) {
        const auto properties = snapshot->ChangedProperties();
        if (std::any_of(properties.begin(), properties.end(),
                        [](const auto& property) { return ShapesPorts(property->Name); }))
            changed.push_back(node);
    }
    for (const std::size_t node : OrderReferrers(changed))
        Rebuild(node, snapshots);

    for (const auto& [node, snapshot] : snapshots) {
        for (const auto& property : snapshot->ChangedProperties())
            old.push_back({_graph.Nodes()[node].Id, _graph.Describe(*property)});
    }
    if (!old.empty())
        _inverse.emplace_back(SetProperties{std::move(old)});
}

GraphChange GraphEdit::Finish()
{
    std::reverse(_inverse.begin(), _inverse.end());
    GraphChange inverse{std::move(_inverse)};
    _rollback.Commit();
    for (const std::size_t edge : _removedEdges)
        _graph.ReleaseEdge(edge);
    for (const std::size_t node : _removedNodes)
        _graph.ReleaseNode(node);
    return inverse;
}

std::size_t GraphEdit::FindNode(const std::string& id) const
{
    const auto index = _graph.FindNode(id);
    if (!index)
        throw HostError({_graph.File(), 0, {}, {}}, Compose("there is no node \"", id, "\""));
    return *index;
}

Place GraphEdit::PlaceOf(const std::string& node) const
{
    return _graph.Nodes()[FindNode(node)].Where;
}

void GraphEdit::DropEdge(std::size_t edge)
{
    AddEdge inverse{_graph.Describe(_graph.Edges()[edge]), {}, {}};
    const std::size_t next = _graph.Edges().Next(edge);
    if (next != GraphStore::None) {
        inverse.BeforeHead = _graph.Nodes()[_graph.Edges()[next].Head].Id;
        inverse.BeforeHeadPort = _graph.Edges()[next].Gui->HeadPort;
    }
    _graph.DetachEdge(edge);
    _rollback.Add([this, edge, next] { _graph.AttachEdge(edge, next); });
    _removedEdges.push_back(edge);
    _inverse.emplace_back(std::move(inverse));
}

void GraphEdit::Remember(std::size_t node, Snapshots& snapshots)
{
    if (snapshots.contains(node))
        return;
    const auto snapshot = std::make_shared<NodeSnapshot>(_graph.Nodes()[node].Gui);
    snapshots.emplace(node, snapshot);
    _rollback.Add([this, node, snapshot] {
        snapshot->Restore();
        _graph.JoinPorts(node);
    });
}

/// Lets a node build its ports anew and drops the edges of those that have vanished.
void GraphEdit::Rebuild(std::size_t node, Snapshots& snapshots)
{
    Remember(node, snapshots);
    const GraphNode& rebuilt = _graph.Nodes()[node];
    _graph.Touch(node);
    rebuilt.Gui.UpdatePorts(rebuilt.Where);
    if (rebuilt.HasRefusedPorts) {
        _graph.SetRefusedPorts(node, false);
        _rollback.Add([this, node] { _graph.SetRefusedPorts(node, true); });
    }
    for (const std::size_t edge : _graph.JoinPorts(node))
        DropEdge(edge);
}

void GraphEdit::SetProperty(std::size_t node, const DocumentProperty& value, Snapshots& snapshots,
                            std::vector<PropertySetting>& old)
{
    const GraphNode& changed = _graph.Nodes()[node];
    const auto property = changed.Gui.Properties().Index.find(value.Name);
    if (property == changed.Gui.Properties().Index.end()) {
        SetStoredProperty(node, value, old);
        return;
    }
    if (property->second == changed.Gui.TypeProperty())
        throw HostError(changed.Where, "the type of a node cannot be changed");
    Remember(node, snapshots);
    ProblemList problems;
    SetFromDocument(_graph, *property->second, value, changed.Where, problems);
    problems.ThrowFirstError();
    if (value.Kind == GuiPropertyKind::Node)
        RefreshReferences(node);
}

/// The type does not know the property, so it can be set only where the document has it.
void GraphEdit::SetStoredProperty(std::size_t node, const DocumentProperty& value,
                                  std::vector<PropertySetting>& old)
{
    const GraphNode& changed = _graph.Nodes()[node];
    const auto& properties = changed.Stored.Properties;
    const auto stored = std::find_if(properties.begin(), properties.end(),
                                     [&](const auto& other) { return other.Name == value.Name; });
    if (stored == properties.end()) {
        throw HostError(changed.Where, Compose("failed to find property \"", value.Name, "\""));
    }
    const auto parsed = Materials::GuiProperty::Create(value.Name);
    parsed->Kind = stored->Kind;
    if (stored->Kind == GuiPropertyKind::Enum)
        parsed->Choices = {value.Value};
    ProblemList problems;
    SetFromDocument(_graph, *parsed, value, changed.Where, problems);
    problems.ThrowFirstError();
    if (stored->Value == value.Value)
        return;
    const auto isHere = [&](const PropertySetting& setting) {
        return setting.Node == changed.Id && setting.Property.Name == value.Name;
    };
    if (std::none_of(old.begin(), old.end(), isHere))
        old.push_back({changed.Id, *stored});
    WriteStored(node, static_cast<std::size_t>(stored - properties.begin()), value.Value);
    if (value.Kind == GuiPropertyKind::Node)
        RefreshReferences(node);
}

void GraphEdit::WriteStored(std::size_t node, std::size_t property, const std::string& value)
{
    const std::string old = _graph.Nodes()[node].Stored.Properties[property].Value;
    _graph.SetStoredValue(node, property, value);
    _rollback.Add([this, node, property, old] { _graph.SetStoredValue(node, property, old); });
}

void GraphEdit::RefreshReferences(std::size_t node)
{
    const std::vector<std::size_t> old = _graph.References().Targets(node);
    _graph.RefreshReferences(node);
    _rollback.Add([this, node, old] { _graph.SetReferences(node, old); });
}

/// The nodes and all that refer to them, directly or not, so that each comes before those that
/// refer to it.
std::vector<std::size_t> GraphEdit::OrderReferrers(const std::vector<std::size_t>& changed) const
{
    std::vector<std::size_t> nodes;
    std::unordered_map<std::size_t, std::size_t> positions;
    const auto meet = [&](std::size_t node) {
        if (positions.try_emplace(node, nodes.size()).second)
            nodes.push_back(node);
        return positions[node];
    };
    for (const std::size_t node : changed)
        meet(node);
    std::vector<OrderLink> links;
    for (std::size_t done = 0; done < nodes.size(); ++done) {
        for (const std::size_t referrer : _graph.References().Referrers(nodes[done]))
            links.emplace_back(done, meet(referrer));
    }
    const GraphOrder order = OrderNodes(nodes.size(), links);
    const auto nodesAt = [&nodes](const std::vector<std::size_t>& places) {
        std::vector<std::size_t> result;
        result.reserve(places.size());
        for (const std::size_t place : places)
            result.push_back(nodes[place]);
        return result;
    };
    if (!order.Cycle.empty()) {
        std::vector<std::size_t> circle = nodesAt(order.Cycle);
        std::reverse(circle.begin(), circle.end()); // references run against the order they ask for
        ProblemList problems;
        RefuseReferenceCircle(_graph, circle, problems);
        problems.ThrowFirstError();
    }
    return nodesAt(order.Order);
}

} // namespace Mox::Host
