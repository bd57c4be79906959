#include "mox/graph/GraphEdit.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/MaterialRules.h"
#include "mox/document/UnknownNode.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

constexpr std::size_t None = OrderedSlots<DocumentNode>::None;

std::string FormatEnds(const DocumentEdge& edge)
{
    return Compose("from output port \"", edge.TailPort, "\" of node \"", edge.Tail,
                   "\" to input port \"", edge.HeadPort, "\" of node \"", edge.Head, "\"");
}

void RenameReferences(DocumentNode& node, const std::string& id, const std::string& newId)
{
    for (DocumentProperty& property : node.Properties) {
        if (property.Kind == GuiPropertyKind::Node && property.Value == id)
            property.Value = newId;
    }
}

} // namespace

void GraphEdit::operator()(const AddNode& step)
{
    const Place where(Document().File, step.Node.Line, step.Node.Id);
    if (step.Node.Id.empty())
        throw HostError(where, "a node needs an id");
    if (_edit.Document().FindNode(step.Node.Id))
        throw HostError(where, "another node already has this id");
    Rebuild(_edit.Insert(step.Node, step.Before.empty() ? None : FindNode(step.Before)));
}

void GraphEdit::operator()(const RemoveNode& step)
{
    const std::size_t index = FindNode(step.Id);
    for (const std::size_t edge : _edit.Document().EdgesFrom(step.Id))
        _edit.Erase<DocumentEdge>(edge);
    for (const std::size_t edge : _edit.Document().EdgesTo(step.Id))
        _edit.Erase<DocumentEdge>(edge);
    std::vector<PropertyEdit> edits;
    for (const std::size_t referrer : _edit.Document().Referrers(step.Id)) {
        if (referrer == index)
            continue;
        edits.emplace_back(_nodes.Builder(), referrer, Document().Nodes[referrer]);
        edits.back().EmptyReferences(step.Id);
    }
    Settle(edits);
    _edit.Erase<DocumentNode>(index);
    Rebuild(index);
}

void GraphEdit::operator()(const RenameNode& step)
{
    const std::size_t index = FindNode(step.Id);
    if (step.NewId == step.Id)
        return;
    if (step.NewId.empty())
        throw HostError(PlaceOf(index), "a node needs an id");
    if (_edit.Document().FindNode(step.NewId)) {
        throw HostError(PlaceOf(index),
                        Compose("another node already has the id \"", step.NewId, "\""));
    }
    const std::vector<std::size_t> referrers = _edit.Document().Referrers(step.Id);
    DocumentNode renamed = Document().Nodes[index];
    renamed.Id = step.NewId;
    _edit.Replace(index, std::move(renamed));
    for (const std::size_t referrer : referrers) {
        DocumentNode node = Document().Nodes[referrer];
        RenameReferences(node, step.Id, step.NewId);
        _edit.Replace(referrer, std::move(node));
    }
    for (const std::size_t edge : _edit.Document().EdgesFrom(step.Id)) {
        DocumentEdge moved = Document().Edges[edge];
        moved.Tail = step.NewId;
        _edit.Replace(edge, std::move(moved));
    }
    for (const std::size_t edge : _edit.Document().EdgesTo(step.Id)) {
        DocumentEdge moved = Document().Edges[edge];
        moved.Head = step.NewId;
        _edit.Replace(edge, std::move(moved));
    }
    Rebuild(index);
}

void GraphEdit::operator()(const AddEdge& step)
{
    FindNode(step.Edge.Tail);
    FindNode(step.Edge.Head);
    std::size_t before = None;
    if (!step.BeforeHead.empty()) {
        FindNode(step.BeforeHead);
        const auto next = _edit.Document().EdgesInto(step.BeforeHead, step.BeforeHeadPort);
        if (next.empty()) {
            throw HostError({Document().File, step.Edge.Line},
                            Compose("no edge feeds input port \"", step.BeforeHeadPort,
                                    "\" of node \"", step.BeforeHead, "\""));
        }
        before = next.front();
    }
    RequireWritable(EdgeRule, AttributesOf(step.Edge));
    _edit.Insert(step.Edge, before);
}

void GraphEdit::operator()(const RemoveEdge& step)
{
    _edit.Erase<DocumentEdge>(FindEdge(step.Edge));
}

void GraphEdit::operator()(const SetPoints& step)
{
    const std::size_t index = FindEdge(step.Edge);
    DocumentEdge changed = Document().Edges[index];
    if (changed.Points == step.Edge.Points)
        return;
    changed.Points = step.Edge.Points;
    RequireWritable(EdgeRule, AttributesOf(changed));
    _edit.Replace(index, std::move(changed));
}

void GraphEdit::operator()(const SetProperties& step)
{
    std::vector<PropertyEdit> edits;
    std::unordered_map<std::size_t, std::size_t> places;
    for (const auto& [node, property] : step.Settings) {
        const std::size_t index = FindNode(node);
        const auto [place, isNew] = places.try_emplace(index, edits.size());
        if (isNew)
            edits.emplace_back(_nodes.Builder(), index, Document().Nodes[index]);
        edits[place->second].Set(property);
    }
    Settle(edits);
}

void GraphEdit::operator()(const SetDescription& step)
{
    _edit.Do(DescriptionChange{step.Values});
}

void GraphEdit::operator()(const SetRenderState& step)
{
    _edit.Do(RenderStateChange{step.Values});
}

void GraphEdit::operator()(const SetBinding& step)
{
    const DocumentBinding& binding = step.Binding;
    const auto index = _edit.Document().FindBinding(binding.Stream, binding.Tag);
    if (!index) {
        _edit.Insert(binding, None);
        return;
    }
    DocumentBinding changed = Document().Bindings[*index];
    changed.Values = binding.Values;
    _edit.Replace(*index, std::move(changed));
}

void GraphEdit::operator()(const RemoveBinding& step)
{
    const auto index = _edit.Document().FindBinding(step.Stream, step.Tag);
    if (!index) {
        throw HostError({Document().File},
                        Compose("there is no ", step.Stream, " binding \"", step.Tag, "\""));
    }
    _edit.Erase<DocumentBinding>(*index);
}

void GraphEdit::operator()(const AddAnnotation& step)
{
    RequireWritable(AnnotationRule, AttributesOf(step.Annotation));
    if (_edit.Document().FindAnnotation(step.Annotation.Id)) {
        throw HostError({Document().File}, Compose("another annotation already has the id \"",
                                                   step.Annotation.Id, "\""));
    }
    _edit.Insert(step.Annotation, None);
}

void GraphEdit::operator()(const SetAnnotation& step)
{
    RequireWritable(AnnotationRule, AttributesOf(step.Annotation));
    const std::size_t index = _edit.Document().RequireAnnotation(step.Annotation.Id);
    DocumentAnnotation changed = step.Annotation;
    const DocumentAnnotation& old = Document().Annotations[index];
    changed.Line = old.Line;
    changed.Comments = old.Comments;
    if (changed == old)
        return;
    _edit.Replace(index, std::move(changed));
}

void GraphEdit::operator()(const RemoveAnnotation& step)
{
    _edit.Erase<DocumentAnnotation>(_edit.Document().RequireAnnotation(step.Id));
}

std::size_t GraphEdit::FindNode(const std::string& id) const
{
    const auto index = _edit.Document().FindNode(id);
    if (!index)
        throw HostError({Document().File}, UnknownNode(id, Document()));
    return *index;
}

/// Finds an edge. Among duplicates, it is the last one, which the graph does not show.
std::size_t GraphEdit::FindEdge(const DocumentEdge& edge) const
{
    std::size_t found = None;
    for (const std::size_t index : _edit.Document().EdgesInto(edge.Head, edge.HeadPort)) {
        const DocumentEdge& other = Document().Edges[index];
        if (other.Tail == edge.Tail && other.TailPort == edge.TailPort)
            found = index;
    }
    if (found == None)
        throw HostError({Document().File}, Compose("there is no edge ", FormatEnds(edge)));
    return found;
}

/// Rejects values with which the document could not be read again.
void GraphEdit::RequireWritable(const ElementRule& rule,
                                const std::vector<DocumentValue>& values) const
{
    std::vector<XmlAttribute> attributes;
    attributes.reserve(values.size());
    for (const DocumentValue& value : values)
        attributes.push_back({value.Name, value.Value});
    for (const AttributeProblem& problem : rule.Check(attributes))
        throw HostError({Document().File}, problem.Message);
}

Place GraphEdit::PlaceOf(std::size_t node) const
{
    return {Document().File, Document().Nodes[node].Line, Document().Nodes[node].Id};
}

/// Builds the nodes whose properties were set, and all nodes that refer to them.
void GraphEdit::Settle(std::vector<PropertyEdit>& edits)
{
    std::vector<std::size_t> changed;
    std::unordered_map<std::size_t, PropertyEdit*> editOf;
    for (PropertyEdit& edit : edits) {
        if (edit.HasChanged()) {
            changed.push_back(edit.Index());
            editOf.emplace(edit.Index(), &edit);
        } else if (edit.WriteHostValues()) {
            _edit.Replace(edit.Index(), edit.Record());
            _nodes.RereadHostValues(edit.Index());
        }
    }
    const std::vector<std::size_t> nodes = _nodes.WithReferrers(changed);
    std::vector<std::vector<std::size_t>> targets;
    for (const std::size_t index : nodes) {
        const auto edit = editOf.find(index);
        targets.push_back(
            edit == editOf.end()
                ? _nodes.TargetsOf(index, _nodes.At(index), Document().Nodes[index])
                : _nodes.TargetsOf(index, edit->second->Live(), edit->second->Record()));
    }
    const GraphOrder order = _nodes.Order(nodes, targets);
    RefuseCircle(order.Cycle);
    for (const std::size_t index : order.Order) {
        const auto edit = editOf.find(index);
        if (edit == editOf.end()) {
            _nodes.Put(index, _nodes.Builder().Build(index, Document().Nodes[index]));
            continue;
        }
        GraphNode node = edit->second->Settle();
        if (edit->second->Record() != Document().Nodes[index])
            _edit.Replace(index, edit->second->Record());
        _nodes.Put(index, std::move(node));
    }
}

void GraphEdit::Rebuild(std::size_t node)
{
    RefuseCircle(_nodes.Rebuild({node}));
}

void GraphEdit::RefuseCircle(const std::vector<std::size_t>& circle) const
{
    if (!circle.empty())
        throw _nodes.Circle("references", circle, _nodes.At(circle.front()).Where);
}

} // namespace Mox::Host
