#include "mox/graph/GraphResolver.h"

#include "mox/Text.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPort;

namespace {

void ForgetCounts(std::vector<GuiPort>& ports)
{
    for (GuiPort& port : ports) {
        port.CountConflict = false;
        port.CountKnown = port.CountFixed;
        if (!port.CountFixed)
            port.ComponentCount = 0;
    }
}

void ForgetPrecisions(std::vector<GuiPort>& ports)
{
    for (GuiPort& port : ports) {
        port.PrecisionKnown = port.PrecisionFixed;
        if (!port.PrecisionFixed)
            port.Precision = ComponentType::Void;
    }
}

} // namespace

/// A queue of nodes without duplicates, processed in monotonic order of their positions.
class GraphResolver::Agenda
{
public:
    /// @param isForward whether nodes are processed from tails to heads
    Agenda(const MaterialGraph& graph, bool isForward)
        : _order(graph.Order()), _isForward(isForward), _isWaiting(graph.Nodes().IndexEnd())
    {}

    void Add(std::size_t node)
    {
        if (_isWaiting[node])
            return;
        _isWaiting[node] = true;
        const std::ptrdiff_t position = _order.Position(node);
        _waiting.emplace_back(_isForward ? -position : position, node);
        std::push_heap(_waiting.begin(), _waiting.end());
    }

    bool IsEmpty() const { return _waiting.empty(); }

    std::size_t Take()
    {
        std::pop_heap(_waiting.begin(), _waiting.end());
        const std::size_t node = _waiting.back().second;
        _waiting.pop_back();
        _isWaiting[node] = false;
        return node;
    }

private:
    const OnlineOrder& _order;
    bool _isForward;
    std::vector<bool> _isWaiting;
    std::vector<std::pair<std::ptrdiff_t, std::size_t>> _waiting; ///< a heap of rank and node
};

std::vector<std::size_t> GraphResolver::Resolve(ProblemList& problems)
{
    _carried.resize(_graph.Edges().IndexEnd());
    Agenda forward(_graph, true);
    Agenda backward(_graph, false);
    for (const std::size_t node : _graph.TakeTouched()) {
        if (_graph.Nodes().Holds(node))
            forward.Add(node);
    }
    if (!std::exchange(_hasRun, true)) {
        for (auto node = _graph.Nodes().begin(); node != _graph.Nodes().end(); ++node)
            forward.Add(node.Index());
    }
    std::vector<std::size_t> called;
    while (!forward.IsEmpty()) {
        called.push_back(forward.Take());
        ResolveCounts(called.back(), forward, problems);
        backward.Add(called.back()); // a class may derive its precision from counts
    }
    while (!backward.IsEmpty()) {
        called.push_back(backward.Take());
        ResolvePrecisions(called.back(), backward, problems);
    }
    std::sort(called.begin(), called.end());
    called.erase(std::unique(called.begin(), called.end()), called.end());
    return called;
}

void GraphResolver::ResolveCounts(std::size_t index, Agenda& agenda, ProblemList& problems)
{
    const MaterialGraph::Node& node = _graph.Nodes()[index];
    const PluginNode& gui = node.Gui;
    ForgetCounts(gui.InputPorts());
    ForgetCounts(gui.OutputPorts());
    for (const std::size_t edge : _graph.Links().In(index)) {
        if (_graph.Edges()[edge].IsLoose)
            continue;
        GuiPort& input = gui.GetInputPort(node.Where, _graph.Edges()[edge].Gui->HeadPort);
        if (input.CountFixed || _carried[edge].Count == 0)
            continue;
        input.ComponentCount = _carried[edge].Count;
        input.CountKnown = true;
    }
    try {
        gui.ResolveComponentCounts(node.Where);
    } catch (const HostError& error) {
        problems.Fail("counts-refused", error);
    }
    for (const std::size_t edge : _graph.Links().Out(index)) {
        if (_graph.Edges()[edge].IsLoose)
            continue;
        const GuiPort& output = gui.GetOutputPort(node.Where, _graph.Edges()[edge].Gui->TailPort);
        const std::int32_t count = output.CountKnown ? output.ComponentCount : 0;
        if (std::exchange(_carried[edge].Count, count) != count)
            agenda.Add(_graph.Edges()[edge].Head);
    }
}

void GraphResolver::ResolvePrecisions(std::size_t index, Agenda& agenda, ProblemList& problems)
{
    const MaterialGraph::Node& node = _graph.Nodes()[index];
    const PluginNode& gui = node.Gui;
    ForgetPrecisions(gui.InputPorts());
    ForgetPrecisions(gui.OutputPorts());
    for (const std::size_t edge : _graph.Links().Out(index)) {
        if (!_carried[edge].IsFloat || _graph.Edges()[edge].IsLoose)
            continue;
        GuiPort& output = gui.GetOutputPort(node.Where, _graph.Edges()[edge].Gui->TailPort);
        if (output.PrecisionFixed)
            continue;
        output.Precision = ComponentType::Float;
        output.PrecisionKnown = true;
    }
    try {
        gui.ResolvePrecisions(node.Where);
    } catch (const HostError& error) {
        problems.Fail("precisions-refused", error);
    }
    for (const std::size_t edge : _graph.Links().In(index)) {
        if (_graph.Edges()[edge].IsLoose)
            continue;
        const GuiPort& input = gui.GetInputPort(node.Where, _graph.Edges()[edge].Gui->HeadPort);
        const bool isFloat = input.PrecisionKnown && input.Precision == ComponentType::Float;
        if (std::exchange(_carried[edge].IsFloat, isFloat) != isFloat)
            agenda.Add(_graph.Edges()[edge].Tail);
    }
}

void ResolveGraph(MaterialGraph& graph, ProblemList& problems)
{
    GraphResolver(graph).Resolve(problems);
}

void ReportCountConflict(const MaterialGraph::Node& node, ProblemList& problems)
{
    std::string counts;
    for (const GuiPort& port : node.Gui.InputPorts()) {
        if (!port.CountConflict)
            continue;
        counts += Compose(counts.empty() ? "" : ", ", "\"", port.Name, "\"");
        if (port.CountKnown)
            counts += Compose(" has ", port.ComponentCount);
    }
    if (!counts.empty()) {
        problems.Fail("count-conflict", node.Where,
                      Compose("component counts do not match: ", counts));
    }
}

void ReportCountConflicts(const MaterialGraph& graph, ProblemList& problems)
{
    for (const MaterialGraph::Node& node : graph.Nodes())
        ReportCountConflict(node, problems);
}

} // namespace Mox::Host
