#include "mox/graph/NodeStage.h"

#include "mox/Text.h"
#include "mox/graph/HostValues.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

std::size_t CountErrors(const ProblemList& problems)
{
    return static_cast<std::size_t>(
        std::ranges::count(problems.Problems(), Severity::Error, &Problem::Level));
}

/// Reports the errors that are new, if there are more errors than before.
void ReportMore(const ProblemList& before, const ProblemList& after, ProblemList& problems)
{
    if (CountErrors(after) <= CountErrors(before))
        return;
    const auto& old = before.Problems();
    for (const Problem& problem : after.Problems()) {
        const bool isOld = std::any_of(old.begin(), old.end(), [&](const Problem& other) {
            return other.Rule == problem.Rule && other.Message == problem.Message;
        });
        if (!isOld && problem.Level == Severity::Error)
            problems.Add(problem);
    }
}

} // namespace

NodeStage::NodeStage(GraphView& view, const IndexedDocument& document, const NodeMaker& maker)
    : _view(view), _document(document),
      _builder(view, document, maker,
               [this](std::size_t index) -> const GraphNode& { return At(index); })
{}

NodeStage::~NodeStage()
{
    const auto discard = [this](const PluginNode& node) {
        _view.Leave(node);
        EmptyReferences(node);
    };
    for (const PluginNode& node : _replaced)
        discard(node);
    for (const auto& [index, node] : _staged)
        discard(node.Gui);
}

const GraphNode& NodeStage::At(std::size_t index) const
{
    const auto staged = _staged.find(index);
    return staged == _staged.end() ? _view.Node(index) : staged->second;
}

void NodeStage::Put(std::size_t index, GraphNode node)
{
    const auto [entry, isNew] = _staged.try_emplace(index);
    if (isNew)
        _order.push_back(index);
    _replaced.push_back(entry->second.Gui);
    if (node.Gui)
        _view.Enter(node.Gui, index);
    entry->second = std::move(node);
}

std::vector<std::size_t> NodeStage::Rebuild(const std::vector<std::size_t>& changed)
{
    const GraphOrder order = OrderStaged(MakeAll(WithReferrers(changed)));
    for (const std::size_t index : order.Order)
        _builder.BuildPorts(_staged.at(index));
    return order.Cycle;
}

void NodeStage::RereadHostValues(std::size_t index)
{
    const DocumentNode& record = _document.Document().Nodes[index];
    GraphNode source = _builder.Make(index, record);
    if (!source.IsShown())
        return;
    _builder.Load(source, index, record);
    if (const auto staged = _staged.find(index); staged != _staged.end()) {
        staged->second.Problems.Loading = std::move(source.Problems.Loading);
        CopyHostValues(source.Gui, staged->second.Gui);
    } else {
        _reread.emplace_back(index, std::move(source));
    }
}

void NodeStage::BuildAll()
{
    std::vector<std::size_t> nodes;
    const auto& records = _document.Document().Nodes;
    for (auto record = records.begin(); record != records.end(); ++record)
        nodes.push_back(record.Index());
    const std::vector<std::size_t> shown = MakeAll(nodes);
    GraphOrder order = OrderStaged(shown);
    for (int circles = 1; !order.Cycle.empty(); ++circles) {
        ReferenceCircles.Fail("reference-circle",
                              Circle("references", order.Cycle, At(order.Cycle.front()).Where));
        BreakReference(order.Cycle.back(), order.Cycle.front());
        if (circles > mostCircles)
            BreakAllReferences(shown);
        order = OrderStaged(shown);
    }
    for (const std::size_t index : order.Order)
        _builder.BuildPorts(_staged.at(index));
}

std::vector<std::size_t> NodeStage::WithReferrers(const std::vector<std::size_t>& nodes) const
{
    std::vector<std::size_t> met;
    std::unordered_set<std::size_t> isMet;
    const auto meet = [&](const std::vector<std::size_t>& more) {
        for (const std::size_t index : more) {
            if (isMet.insert(index).second)
                met.push_back(index);
        }
    };
    meet(nodes);
    std::size_t done = 0;
    while (done < met.size()) {
        const std::size_t index = met[done++];
        const std::string& oldId = At(index).Id;
        meet(_document.Referrers(oldId));
        const auto& records = _document.Document().Nodes;
        if (records.Holds(index) && records[index].Id != oldId)
            meet(_document.Referrers(records[index].Id));
    }
    return met;
}

std::vector<std::size_t> NodeStage::TargetsOf(std::size_t index, const GraphNode& node,
                                              const DocumentNode& record) const
{
    std::vector<std::size_t> targets;
    if (!node.IsShown())
        return targets;
    const auto add = [&](std::optional<std::size_t> target) {
        if (target && !_builder.BrokenReferences.contains({index, *target}))
            targets.push_back(*target);
    };
    for (const auto& property : node.Gui.Properties().Properties) {
        if (property->Kind == GuiPropertyKind::Node && property->Node)
            add(_view.Find(property->Node.get()));
    }
    for (const DocumentProperty& property : record.Properties) {
        if (property.Kind == GuiPropertyKind::Node &&
            !node.Gui.Properties().Index.contains(property.Name))
            add(_document.FindNode(property.Value));
    }
    return targets;
}

GraphOrder NodeStage::Order(const std::vector<std::size_t>& nodes,
                            const std::vector<std::vector<std::size_t>>& targets) const
{
    std::unordered_map<std::size_t, std::size_t> positions;
    for (std::size_t i = 0; i < nodes.size(); ++i)
        positions.emplace(nodes[i], i);
    std::vector<OrderLink> links;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (const std::size_t target : targets[i]) {
            if (const auto position = positions.find(target); position != positions.end())
                links.emplace_back(position->second, i);
        }
    }
    GraphOrder order = OrderNodes(nodes.size(), links);
    for (auto* places : {&order.Order, &order.Cycle}) {
        for (std::size_t& place : *places)
            place = nodes[place];
    }
    // References point in the opposite direction of the order.
    std::reverse(order.Cycle.begin(), order.Cycle.end());
    return order;
}

HostError NodeStage::Circle(const char* links, const std::vector<std::size_t>& circle,
                            const Place& where) const
{
    std::string path;
    for (const std::size_t node : circle)
        path += Compose("\"", At(node).Id, "\" -> ");
    return {where, Compose(links, " form a cycle: ", path, "\"", At(circle.front()).Id, "\"")};
}

void NodeStage::ReportNewErrors(ProblemList& problems) const
{
    for (const std::size_t index : _order) {
        const NodeProblems& before = _view.Node(index).Problems;
        const NodeProblems& after = _staged.at(index).Problems;
        ReportMore(before.Making, after.Making, problems);
        ReportMore(before.Loading, after.Loading, problems);
        ReportMore(before.Building, after.Building, problems);
    }
}

void NodeStage::Commit() noexcept
{
    for (auto& [index, source] : _reread)
        _view.TakeHostValues(index, std::move(source));
    for (const std::size_t index : _order)
        _view.Replace(index, std::move(_staged.find(index)->second));
    _staged.clear();
}

/// Creates nodes and loads their properties.
/// @returns the nodes that are shown, whose ports must still be built
std::vector<std::size_t> NodeStage::MakeAll(const std::vector<std::size_t>& nodes)
{
    const auto& records = _document.Document().Nodes;
    std::vector<std::size_t> shown;
    for (const std::size_t index : nodes) {
        GraphNode node;
        if (records.Holds(index))
            node = _builder.Make(index, records[index]);
        if (node.IsShown())
            shown.push_back(index);
        Put(index, std::move(node));
    }
    for (const std::size_t index : shown)
        _builder.Load(_staged.at(index), index, records[index]);
    return shown;
}

GraphOrder NodeStage::OrderStaged(const std::vector<std::size_t>& nodes) const
{
    std::vector<std::vector<std::size_t>> targets;
    targets.reserve(nodes.size());
    for (const std::size_t index : nodes)
        targets.push_back(TargetsOf(index, At(index), _document.Document().Nodes[index]));
    return Order(nodes, targets);
}

void NodeStage::BreakReference(std::size_t referrer, std::size_t target)
{
    for (const auto& property : At(referrer).Gui.Properties().Properties) {
        if (property->Node == At(target).Gui.Handle())
            property->Node.reset();
    }
    _builder.BrokenReferences.emplace(referrer, target);
}

void NodeStage::BreakAllReferences(const std::vector<std::size_t>& nodes)
{
    for (const std::size_t index : nodes) {
        for (const std::size_t target :
             TargetsOf(index, At(index), _document.Document().Nodes[index]))
            BreakReference(index, target);
    }
}

} // namespace Mox::Host
