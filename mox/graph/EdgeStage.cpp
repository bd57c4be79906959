#include "mox/graph/EdgeStage.h"

#include "mox/Text.h"
#include "mox/document/UnknownNode.h"
#include "mox/host/NearestName.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <set>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiEdge;

namespace {

std::vector<RightName> NamesOf(const std::vector<Materials::GuiPort>& ports)
{
    std::vector<RightName> names;
    names.reserve(ports.size());
    for (const Materials::GuiPort& port : ports)
        names.push_back({port.Name, port.Label});
    return names;
}

/// Returns whether a node has a port; if not, reports the error of the lookup.
template <class LookUp>
bool HasPort(const GraphNode& node, std::int32_t found, const std::string& name,
             const std::vector<Materials::GuiPort>& ports, ProblemList& problems, LookUp lookUp)
{
    if (node.IsPlaceholder || found >= 0)
        return true;
    try {
        lookUp();
        return true;
    } catch (const HostError& error) {
        problems.Fail("unknown-port", error.Where,
                      error.Message + SuggestName(name, NamesOf(ports)));
        return false;
    }
}

/// Checks whether an edge between two shown nodes is valid: both ports must exist, and the nodes
/// must differ. Ports of a placeholder are assumed to exist. Reports all failures. Duplicate edges
/// into an input and cycles are checked elsewhere.
bool CheckEdge(const GraphNode& tail, const GraphNode& head, const DocumentEdge& edge,
               const Place& where, ProblemList& problems)
{
    if (edge.Tail == edge.Head) {
        problems.Fail("self-edge", where, Compose("node \"", edge.Tail, "\" cannot feed itself"));
        return false;
    }
    const bool hasOutput =
        HasPort(tail, tail.Gui.FindOutputPort(edge.TailPort), edge.TailPort, tail.Gui.OutputPorts(),
                problems, [&] {
                    tail.Gui.GetOutputPort({where.File, where.Line, tail.Id}, edge.TailPort);
                });
    const bool hasInput =
        HasPort(head, head.Gui.FindInputPort(edge.HeadPort), edge.HeadPort, head.Gui.InputPorts(),
                problems, [&] {
                    head.Gui.GetInputPort({where.File, where.Line, head.Id}, edge.HeadPort);
                });
    return hasOutput && hasInput;
}

} // namespace

EdgeStage::~EdgeStage()
{
    while (_addedLinks > 0)
        _view.Links().Remove(_new[--_addedLinks].first);
    while (_removedLinks > 0) {
        const std::size_t edge = _hidden[--_removedLinks];
        _view.Links().Add(edge, _view.Edge(edge).Tail, _view.Edge(edge).Head);
    }
    _view.Order().TakeBack();
}

void EdgeStage::EraseLost(DocumentEdit& edit) const
{
    for (const std::size_t index : _nodes.Staged()) {
        const GraphNode& node = _nodes.At(index);
        if (!node.IsShown() || node.IsPlaceholder || node.Problems.Building.HasErrors())
            continue;
        for (const std::size_t edge : _view.Links().In(index)) {
            if (node.Gui.FindInputPort(_view.Edge(edge).Gui->HeadPort) < 0 && IsAsShown(edge))
                edit.Erase<DocumentEdge>(edge);
        }
        for (const std::size_t edge : _view.Links().Out(index)) {
            if (node.Gui.FindOutputPort(_view.Edge(edge).Gui->TailPort) < 0 && IsAsShown(edge))
                edit.Erase<DocumentEdge>(edge);
        }
    }
}

void EdgeStage::Judge(const std::vector<DocumentStep>& done)
{
    _view.Reserve(_document.Document().Nodes.IndexEnd(), _document.Document().Edges.IndexEnd());
    std::set<std::size_t> touched;
    std::set<std::size_t> inserted;
    for (const DocumentStep& step : done) {
        if (const auto* edge = std::get_if<RecordChange<DocumentEdge>>(&step)) {
            touched.insert(edge->Index);
            if (!edge->Content)
                inserted.insert(edge->Index);
        }
    }
    for (const auto& [head, port] : FindInputs(done)) {
        bool isFed = false;
        for (const std::size_t edge :
             InDocumentOrder(_document.EdgesInto(std::string(head), std::string(port)))) {
            Verdict verdict = JudgeOne(edge);
            verdict.IsInserted = inserted.contains(edge);
            if (isFed)
                RefuseSecond(verdict);
            isFed = isFed || verdict.IsShown;
            _verdicts.push_back(std::move(verdict));
        }
    }
    for (const std::size_t edge : touched) {
        if (!_document.Document().Edges.Holds(edge))
            _verdicts.push_back({edge, {}});
    }
    std::stable_partition(_verdicts.begin(), _verdicts.end(),
                          [&](const Verdict& verdict) { return !WasProblem(verdict); });
    Prepare();
}

void EdgeStage::JudgeAll()
{
    const auto& edges = _document.Document().Edges;
    _verdicts.reserve(edges.size());
    std::set<std::pair<std::size_t, std::string_view>> fed;
    for (auto edge = edges.begin(); edge != edges.end(); ++edge) {
        Verdict& verdict = _verdicts.emplace_back(JudgeOne(edge.Index()));
        if (verdict.IsShown && !fed.emplace(verdict.Edge.Head, edge->HeadPort).second)
            RefuseSecond(verdict);
    }
    LeaveOutCircles();
    Prepare();
    for (const auto& [index, added] : _new)
        _view.Links().Add(index, added.Edge.Tail, added.Edge.Head);
}

void EdgeStage::ReportNewErrors(ProblemList& problems) const
{
    for (const Verdict& verdict : _verdicts) {
        if (verdict.IsShown || !_document.Document().Edges.Holds(verdict.Index) ||
            WasProblem(verdict))
            continue;
        problems.Append(verdict.Edge.Problems);
        if (!verdict.Edge.Problems.HasErrors())
            problems.Fail("unknown-port", verdict.Edge.Where,
                          "the node at one end of the edge has no ports");
    }
}

std::optional<EdgeStage::Circle> EdgeStage::Admit()
{
    for (const std::size_t index : _nodes.Staged()) {
        if (!_view.Node(index).IsShown())
            _view.Order().Append(index);
    }
    LinkTable& links = _view.Links();
    for (; _removedLinks < _hidden.size(); ++_removedLinks)
        links.Remove(_hidden[_removedLinks]);
    for (; _addedLinks < _new.size(); ++_addedLinks) {
        const auto& [index, added] = _new[_addedLinks];
        const GraphEdge& edge = added.Edge;
        const auto circle = _view.Order().Admit(links, edge.Tail, edge.Head);
        if (!circle.empty())
            return Circle{_nodes.Circle("edges", circle, edge.Where), _addedLinks < _firstRevived};
        links.Add(index, edge.Tail, edge.Head);
    }
    return std::nullopt;
}

void EdgeStage::CommitHidden() noexcept
{
    for (const std::size_t edge : _hidden)
        _view.Hide(edge);
    _removedLinks = 0;
}

void EdgeStage::CommitNew() noexcept
{
    for (auto& [index, edge] : _new)
        _view.Show(index, std::move(edge));
    _addedLinks = 0;
    _view.Order().Keep();
    for (const std::size_t note : _notes) {
        Verdict& verdict = _verdicts[note];
        _view.Note(verdict.Index, std::move(verdict.Edge.Where), std::move(verdict.Edge.Problems));
    }
}

/// Collects the inputs that may be affected: those of the edges changed by steps, and of all edges
/// at new nodes, without duplicates.
std::vector<EdgeStage::Input> EdgeStage::FindInputs(const std::vector<DocumentStep>& done) const
{
    const auto& edges = _document.Document().Edges;
    const auto& nodes = _document.Document().Nodes;
    std::vector<Input> inputs;
    const auto add = [&](const DocumentEdge& edge) {
        inputs.emplace_back(edge.Head, edge.HeadPort);
    };
    const auto addAll = [&](const std::vector<std::size_t>& found) {
        for (const std::size_t edge : found)
            add(edges[edge]);
    };
    for (const DocumentStep& step : done) {
        const auto* edge = std::get_if<RecordChange<DocumentEdge>>(&step);
        if (edge && edge->Content)
            add(*edge->Content);
        if (edge && edges.Holds(edge->Index))
            add(edges[edge->Index]);
    }
    std::set<std::string> ids;
    for (const std::size_t index : _nodes.Staged()) {
        ids.insert(_view.Node(index).Id);
        if (nodes.Holds(index))
            ids.insert(nodes[index].Id);
    }
    for (const std::string& id : ids) {
        addAll(_document.EdgesFrom(id));
        addAll(_document.EdgesTo(id));
    }
    std::sort(inputs.begin(), inputs.end());
    inputs.erase(std::unique(inputs.begin(), inputs.end()), inputs.end());
    return inputs;
}

std::vector<std::size_t> EdgeStage::InDocumentOrder(std::vector<std::size_t> edges)
{
    if (edges.size() < 2)
        return edges;
    if (_ranks.empty()) {
        const auto& records = _document.Document().Edges;
        _ranks.resize(records.IndexEnd());
        std::size_t rank = 0;
        for (auto edge = records.begin(); edge != records.end(); ++edge)
            _ranks[edge.Index()] = rank++;
    }
    std::sort(edges.begin(), edges.end(),
              [&](std::size_t left, std::size_t right) { return _ranks[left] < _ranks[right]; });
    return edges;
}

/// Whether the record of a shown edge still matches the view.
bool EdgeStage::IsAsShown(std::size_t edge) const
{
    if (!_document.Document().Edges.Holds(edge))
        return false;
    const DocumentEdge& record = _document.Document().Edges[edge];
    const GraphEdge& shown = _view.Edge(edge);
    return _document.FindNode(record.Tail) == shown.Tail &&
           _document.FindNode(record.Head) == shown.Head &&
           record.TailPort == shown.Gui->TailPort && record.HeadPort == shown.Gui->HeadPort;
}

/// Whether an edge was already in the document but not shown.
bool EdgeStage::WasProblem(const Verdict& verdict) const
{
    return !verdict.IsInserted && !_view.Edge(verdict.Index).IsShown();
}

EdgeStage::Verdict EdgeStage::JudgeOne(std::size_t index) const
{
    const DocumentEdge& record = _document.Document().Edges[index];
    Verdict verdict{index, {}};
    GraphEdge& edge = verdict.Edge;
    edge.Where = {_document.Document().File, record.Line};
    const auto tail = FindEnd(record.Tail, edge);
    const auto head = FindEnd(record.Head, edge);
    if (!tail || !head)
        return verdict;
    const GraphNode& tailNode = _nodes.At(*tail);
    const GraphNode& headNode = _nodes.At(*head);
    for (const GraphNode* node : {&tailNode, &headNode}) {
        if (!node->IsShown() || node->Problems.Building.HasErrors())
            return verdict; // the problem is reported with the node
    }
    verdict.IsShown = CheckEdge(tailNode, headNode, record, edge.Where, edge.Problems);
    edge.Tail = *tail;
    edge.Head = *head;
    edge.IsLoose = tailNode.IsPlaceholder || headNode.IsPlaceholder;
    return verdict;
}

/// Hides an edge that would otherwise be shown if its input already has an edge.
void EdgeStage::RefuseSecond(Verdict& verdict) const
{
    if (!verdict.IsShown)
        return;
    const DocumentEdge& edge = _document.Document().Edges[verdict.Index];
    verdict.IsShown = false;
    verdict.Edge.Problems.Fail("doubled-input", verdict.Edge.Where,
                               Compose("input port \"", edge.HeadPort, "\" of node \"", edge.Head,
                                       "\" already has an edge, so output port \"", edge.TailPort,
                                       "\" of node \"", edge.Tail, "\" cannot feed it as well"));
}

std::optional<std::size_t> EdgeStage::FindEnd(const std::string& id, GraphEdge& edge) const
{
    const auto index = _document.FindNode(id);
    if (!index)
        edge.Problems.Fail("unknown-node", edge.Where, UnknownNode(id));
    return index;
}

std::vector<OrderLink> EdgeStage::LinksOfVerdicts(const std::vector<std::size_t>& positions) const
{
    std::vector<OrderLink> links;
    for (const Verdict& verdict : _verdicts) {
        if (verdict.IsShown)
            links.emplace_back(positions[verdict.Edge.Tail], positions[verdict.Edge.Head]);
    }
    return links;
}

/// Checks all edges for cycles, omits edges that close one, and stores the resulting node order.
void EdgeStage::LeaveOutCircles()
{
    const auto& records = _document.Document().Nodes;
    std::vector<std::size_t> nodes;
    std::vector<std::size_t> positions(records.IndexEnd());
    for (auto node = records.begin(); node != records.end(); ++node) {
        positions[node.Index()] = nodes.size();
        nodes.push_back(node.Index());
    }
    GraphOrder order = OrderNodes(nodes.size(), LinksOfVerdicts(positions));
    for (int circles = 1; !order.Cycle.empty(); ++circles) {
        std::vector<std::size_t> circle;
        for (const std::size_t position : order.Cycle)
            circle.push_back(nodes[position]);
        Circles.Fail("edge-circle",
                     _nodes.Circle("edges", circle, _nodes.At(circle.front()).Where));
        for (Verdict& verdict : _verdicts) {
            const bool isLast =
                verdict.Edge.Tail == circle.back() && verdict.Edge.Head == circle.front();
            verdict.IsShown = verdict.IsShown && !isLast && circles <= mostCircles;
        }
        order = OrderNodes(nodes.size(), LinksOfVerdicts(positions));
    }
    for (std::size_t& position : order.Order)
        position = nodes[position];
    _view.Order().Assign(order.Order);
}

/// Compares the verdicts with the view and collects the differences.
void EdgeStage::Prepare()
{
    _new.reserve(_verdicts.size());
    for (std::size_t i = 0; i < _verdicts.size(); ++i) {
        Verdict& verdict = _verdicts[i];
        const bool wasShown = _view.Edge(verdict.Index).IsShown();
        if (wasShown && verdict.IsShown && IsAsShown(verdict.Index) &&
            verdict.Edge.IsLoose == _view.Edge(verdict.Index).IsLoose) {
            _notes.push_back(i);
            continue;
        }
        if (wasShown)
            _hidden.push_back(verdict.Index);
        if (!verdict.IsShown) {
            _notes.push_back(i);
            continue;
        }
        const DocumentEdge& record = _document.Document().Edges[verdict.Index];
        GraphEdge edge = std::move(verdict.Edge);
        edge.Gui = boost::make_shared<GuiEdge>();
        edge.Gui->Tail = _nodes.At(edge.Tail).Gui.Handle();
        edge.Gui->Head = _nodes.At(edge.Head).Gui.Handle();
        edge.Gui->TailPort = record.TailPort;
        edge.Gui->HeadPort = record.HeadPort;
        _new.emplace_back(verdict.Index, GraphView::NewEdge(std::move(edge)));
        if (!WasProblem(verdict))
            _firstRevived = _new.size();
    }
}

} // namespace Mox::Host
