#include "mox/graph/GraphView.h"

#include "mox/graph/HostValues.h"

#include <utility>

namespace Mox::Host {

using Materials::GuiPort;

void EmptyReferences(const PluginNode& node) noexcept
{
    if (!node)
        return;
    for (const auto& property : node.Properties().Properties)
        property->Node.reset();
}

GraphView::~GraphView()
{
    for (const GraphNode& node : _nodes)
        EmptyReferences(node.Gui);
}

const GraphNode& GraphView::Node(std::size_t index) const
{
    static const GraphNode none;
    return index < _nodes.size() ? _nodes[index] : none;
}

const GraphEdge& GraphView::Edge(std::size_t index) const
{
    static const GraphEdge none;
    return index < _edges.size() ? _edges[index] : none;
}

std::optional<std::size_t> GraphView::Find(const Materials::GuiNode* node) const
{
    const auto entry = _numbers.find(node);
    if (entry == _numbers.end())
        return std::nullopt;
    return entry->second;
}

bool GraphView::HasCircles() const
{
    return !_referenceCircles.Problems().empty() || !_edgeCircles.Problems().empty();
}

void GraphView::Report(const MaterialDocument& document, ProblemList& problems) const
{
    const auto report = [&](ProblemList NodeProblems::*step) {
        for (auto node = document.Nodes.begin(); node != document.Nodes.end(); ++node)
            problems.Append(Node(node.Index()).Problems.*step);
    };
    report(&NodeProblems::Making);
    report(&NodeProblems::Loading);
    problems.Append(_referenceCircles);
    report(&NodeProblems::Building);
    for (auto edge = document.Edges.begin(); edge != document.Edges.end(); ++edge)
        problems.Append(Edge(edge.Index()).Problems);
    problems.Append(_edgeCircles);
}

void GraphView::Reserve(std::size_t nodeEnd, std::size_t edgeEnd)
{
    if (_nodes.size() < nodeEnd)
        _nodes.resize(nodeEnd);
    if (_edges.size() < edgeEnd)
        _edges.resize(edgeEnd);
    _isTouched.resize(_nodes.size());
    _touched.reserve(_nodes.capacity());
}

void GraphView::Enter(const PluginNode& node, std::size_t index)
{
    _numbers.emplace(node.Handle().get(), index);
}

void GraphView::Leave(const PluginNode& node) noexcept
{
    _numbers.erase(node.Handle().get());
}

void GraphView::SetCircles(std::set<NodeReference> brokenReferences, ProblemList references,
                           ProblemList edges) noexcept
{
    _brokenReferences = std::move(brokenReferences);
    _referenceCircles = std::move(references);
    _edgeCircles = std::move(edges);
}

void GraphView::Replace(std::size_t index, GraphNode&& node) noexcept
{
    GraphNode& old = _nodes[index];
    if (old.Gui && node.Gui) {
        node.Gui.InEdges().swap(old.Gui.InEdges());
        node.Gui.OutEdges().swap(old.Gui.OutEdges());
        for (const std::size_t edge : _links.In(index)) {
            if (_edges[edge].Gui)
                _edges[edge].Gui->Head = node.Gui.Handle();
        }
        for (const std::size_t edge : _links.Out(index)) {
            if (_edges[edge].Gui)
                _edges[edge].Gui->Tail = node.Gui.Handle();
        }
    }
    if (old.Gui)
        Leave(old.Gui);
    _nodeCount -= old.IsShown() ? 1 : 0;
    old = std::move(node);
    _nodeCount += old.IsShown() ? 1 : 0;
    if (old.Gui)
        JoinPorts(index);
    Touch(index);
}

void GraphView::TakeHostValues(std::size_t index, GraphNode&& source) noexcept
{
    CopyHostValues(source.Gui, _nodes[index].Gui);
    _nodes[index].Problems.Loading = std::move(source.Problems.Loading);
}

GraphView::NewEdge::NewEdge(GraphEdge edge) : Edge(std::move(edge))
{
    Out.emplace_back(Edge.Gui);
    In.emplace_back(Edge.Gui);
    Edge.OutEntry = Out.begin();
    Edge.InEntry = In.begin();
}

void GraphView::Show(std::size_t index, NewEdge&& edge) noexcept
{
    _edges[index] = std::move(edge.Edge);
    ++_edgeCount;
    const GraphEdge& shown = _edges[index];
    if (!shown.IsLoose) {
        const PluginNode& tail = _nodes[shown.Tail].Gui;
        const PluginNode& head = _nodes[shown.Head].Gui;
        tail.OutEdges().splice(tail.OutEdges().end(), edge.Out);
        head.InEdges().splice(head.InEdges().end(), edge.In);
        ConnectInput(shown, true);
        CountOutputUse(shown, true);
    }
    Touch(shown.Tail);
    Touch(shown.Head);
}

void GraphView::Hide(std::size_t index) noexcept
{
    const GraphEdge& hidden = _edges[index];
    if (!hidden.IsLoose) {
        ConnectInput(hidden, false);
        CountOutputUse(hidden, false);
        _nodes[hidden.Tail].Gui.OutEdges().erase(hidden.OutEntry);
        _nodes[hidden.Head].Gui.InEdges().erase(hidden.InEntry);
    }
    Touch(hidden.Tail);
    Touch(hidden.Head);
    _edges[index] = {};
    --_edgeCount;
}

void GraphView::Note(std::size_t edge, Place&& where, ProblemList&& problems) noexcept
{
    _edges[edge].Where = std::move(where);
    _edges[edge].Problems = std::move(problems);
}

void GraphView::Touch(std::size_t node) noexcept
{
    if (_isTouched[node])
        return;
    _isTouched[node] = true;
    _touched.push_back(node);
}

std::vector<std::size_t> GraphView::TakeTouched()
{
    std::vector<std::size_t> touched = _touched;
    for (const std::size_t node : touched)
        _isTouched[node] = false;
    _touched.clear();
    return touched;
}

void GraphView::Swap(GraphView& other) noexcept
{
    _nodes.swap(other._nodes);
    _edges.swap(other._edges);
    std::swap(_nodeCount, other._nodeCount);
    std::swap(_edgeCount, other._edgeCount);
    std::swap(_links, other._links);
    std::swap(_order, other._order);
    _numbers.swap(other._numbers);
    _brokenReferences.swap(other._brokenReferences);
    std::swap(_referenceCircles, other._referenceCircles);
    std::swap(_edgeCircles, other._edgeCircles);
    _touched.swap(other._touched);
    _isTouched.swap(other._isTouched);
}

/// Sets the Connected flags of a node's ports according to the shown edges.
void GraphView::JoinPorts(std::size_t index) noexcept
{
    GraphNode& node = _nodes[index];
    for (auto* ports : {&node.Gui.InputPorts(), &node.Gui.OutputPorts()}) {
        for (GuiPort& port : *ports)
            port.Connected = false;
    }
    for (const std::size_t edge : _links.In(index)) {
        if (_edges[edge].Gui)
            ConnectInput(_edges[edge], true);
    }
    for (const std::size_t edge : _links.Out(index)) {
        if (_edges[edge].Gui)
            CountOutputUse(_edges[edge], true);
    }
}

void GraphView::ConnectInput(const GraphEdge& edge, bool isConnected) noexcept
{
    const PluginNode& head = _nodes[edge.Head].Gui;
    const std::int32_t input = edge.IsLoose ? -1 : head.FindInputPort(edge.Gui->HeadPort);
    if (input >= 0)
        head.InputPorts()[static_cast<std::size_t>(input)].Connected = isConnected;
}

void GraphView::CountOutputUse(const GraphEdge& edge, bool isUsed) noexcept
{
    GraphNode& tail = _nodes[edge.Tail];
    const std::int32_t output = edge.IsLoose ? -1 : tail.Gui.FindOutputPort(edge.Gui->TailPort);
    if (output < 0)
        return;
    std::size_t& uses = tail.OutputUses[static_cast<std::size_t>(output)];
    isUsed ? ++uses : --uses;
    tail.Gui.OutputPorts()[static_cast<std::size_t>(output)].Connected = uses > 0;
}

} // namespace Mox::Host
