#include "mox/program/ShaderGeneration.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/StandInNames.h"

#include <algorithm>
#include <tuple>
#include <unordered_set>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Moves the entries of an edge list out while an operation runs that would search the list for its
/// edge, and afterwards puts them back at the front. While a graph only grows, its edges are alive
/// and a new edge is in no list, so the search would find nothing but makes high fan-out expensive.
class ParkedEntries
{
public:
    explicit ParkedEntries(ShaderNode::EdgeList& list) : _list(list) { _entries.swap(_list); }
    ~ParkedEntries() { _list.splice(_list.begin(), _entries); }

    ParkedEntries(const ParkedEntries&) = delete;
    ParkedEntries& operator=(const ParkedEntries&) = delete;

private:
    ShaderNode::EdgeList& _list;
    ShaderNode::EdgeList _entries;
};

class ShaderGeneration
{
public:
    ShaderGeneration(const MaterialGraph& graph, GeneratedShader& shader, ProblemList& problems)
        : _graph(graph), _shader(shader), _problems(problems), _generator(shader.Graph)
    {}

    void Generate()
    {
        const StandInNames names(_graph, _problems);
        for (auto entry = _graph.Nodes().begin(); entry != _graph.Nodes().end(); ++entry) {
            const MaterialGraph::Node& node = *entry;
            if (node.Problems.Building.HasErrors())
                continue; // without ports, its function would be invalid
            try {
                node.Gui.GenerateShader(node.Where, _generator);
            } catch (const HostError& error) {
                if (!MissesPlaceholder(entry.Index()))
                    _problems.Fail("node-failed", error.Where, names.Translate(error.Message));
                _failed.insert(entry.Index());
            }
            NoteOrigins(OriginOf(node), &names);
        }
        JoinEdges();
    }

private:
    struct Join
    {
        std::size_t Head;
        std::int32_t HeadPort;
        const MaterialGraph::Edge* Edge;
        const ShaderEdgeRecord* Record;
    };

    /// Whether an edge of the node connects no ports because of a placeholder, whose unknown type
    /// has been reported.
    bool MissesPlaceholder(std::size_t node) const
    {
        const auto& inputs = _graph.Nodes()[node].Gui.InputPorts();
        return std::any_of(inputs.begin(), inputs.end(), [&](const Materials::GuiPort& port) {
            return _graph.HasLooseEdge(node, port.Name);
        });
    }

    /// Final pass: connects the shader nodes that the authoring nodes became along the recorded
    /// edges. It iterates by node and port, so that the result depends neither on addresses nor on
    /// the order in which the edges were made.
    ///
    /// An edge without a recorded tail or without recorded heads is skipped: its output or input
    /// was not used in what the node wrote, and the value is not read anywhere.
    void JoinEdges()
    {
        std::vector<std::size_t> positions(_graph.Nodes().IndexEnd());
        std::size_t position = 0;
        for (auto node = _graph.Nodes().begin(); node != _graph.Nodes().end(); ++node)
            positions[node.Index()] = position++;
        std::vector<Join> joins;
        joins.reserve(_graph.Edges().size());
        for (const MaterialGraph::Edge& edge : _graph.Edges()) {
            const auto record = _generator.EdgeMap.find(edge.Gui);
            if (record == _generator.EdgeMap.end())
                continue;
            const PluginNode& head = _graph.Nodes()[edge.Head].Gui;
            joins.push_back({positions[edge.Head], head.FindInputPort(edge.Gui->HeadPort), &edge,
                             &record->second});
        }
        std::sort(joins.begin(), joins.end(), [](const Join& a, const Join& b) {
            return std::tie(a.Head, a.HeadPort) < std::tie(b.Head, b.HeadPort);
        });
        for (const Join& join : joins)
            JoinEdge(*join.Edge, *join.Record);
    }

    void JoinEdge(const MaterialGraph::Edge& edge, const ShaderEdgeRecord& record)
    {
        const bool hasFailed = _failed.contains(edge.Tail);
        if (!record.Tail && !hasFailed)
            return;
        for (std::size_t i = 0; i < record.Heads.size(); ++i) {
            if (hasFailed) {
                FeedStandIn(edge, record.Heads[i], record.HeadPorts[i]);
                continue;
            }
            try {
                CallLibrary(edge.Where, [&] {
                    NotePort(record.Heads[i], edge);
                    const ShaderNodeHandle tail = _generator.GetShaderNode(record.Tail);
                    const ParkedEntries parked(tail->OutEdges);
                    _generator.Connect(record.Tail, record.TailPort, record.Heads[i],
                                       record.HeadPorts[i]);
                });
            } catch (const HostError& error) {
                _problems.Fail("edge-failed", error.Where,
                               Compose("edge from \"", _graph.Nodes()[edge.Tail].Id, "\" port \"",
                                       edge.Gui->TailPort, "\" to \"", _graph.Nodes()[edge.Head].Id,
                                       "\" port \"", edge.Gui->HeadPort, "\": ", error.Message));
                FeedStandIn(edge, record.Heads[i], record.HeadPorts[i]);
            }
        }
        NoteOrigins({_graph.Nodes()[edge.Head].Id, "conversion"});
    }

    /// Connects a uniform to an input whose value is missing because of a failure, so that the rest
    /// of the program can be checked.
    void FeedStandIn(const MaterialGraph::Edge& edge, const ShaderNodeHandle& head,
                     const std::string& port)
    {
        const std::int32_t input = head->FindInputPort(port);
        if (input < 0 || !_generator.NodeMap.contains(head))
            return;
        const ShaderNodeHandle value = ShaderNode::CreateUniformParameter(
            Compose("failed_", ++_standIns), head->Inputs[static_cast<std::size_t>(input)].Type);
        _generator.AddNode(value);
        _generator.Connect(value, value->Outputs.front().Name, head, port);
        NoteOrigins(OriginOf(_graph.Nodes()[edge.Tail]));
    }

    void NotePort(const ShaderNodeHandle& head, const MaterialGraph::Edge& edge)
    {
        if (head->Kind == ShaderNodeKind::InterfaceParameter) {
            const MaterialGraph::Node& node = _graph.Nodes()[edge.Head];
            ShaderOrigin origin = OriginOf(node);
            origin.Port = edge.Gui->HeadPort;
            _shader.Origins.Set(*_generator.GetShaderNode(head), std::move(origin));
        }
    }

    static ShaderOrigin OriginOf(const MaterialGraph::Node& node)
    {
        ShaderOrigin origin{node.Id, node.Gui.Type()};
        origin.Properties = &node.Gui.Properties();
        return origin;
    }

    /// Sets the origin of all nodes added to the graph since the last call.
    /// @param names stand-in names that the node may have used for its parameters
    void NoteOrigins(ShaderOrigin origin, const StandInNames* names = nullptr)
    {
        auto entry = _shader.Graph.Nodes.rbegin();
        for (std::size_t i = _shader.Graph.Nodes.size(); i > _noted; --i, ++entry) {
            // Nodes that a provider added in between belong to the environment.
            const ShaderNode& shader = **entry;
            if (shader.Kind != ShaderNodeKind::Function && !_generator.NodeMap.contains(*entry))
                continue;
            origin.Name = names && IsParameter(shader) ? names->OriginalOf(shader.Name) : "";
            _shader.Origins.Set(shader, origin);
        }
        _noted = _shader.Graph.Nodes.size();
    }

    const MaterialGraph& _graph;
    GeneratedShader& _shader;
    ProblemList& _problems;
    ShaderGraphGenerator _generator;
    std::unordered_set<std::size_t> _failed; ///< indices of nodes
    std::size_t _standIns = 0;
    std::size_t _noted = 0; ///< number of nodes whose origins are set
};

} // namespace

void GenerateShaderGraph(const MaterialGraph& graph, GeneratedShader& shader, ProblemList& problems)
{
    for (const std::size_t node : graph.Touched()) {
        if (graph.Nodes().Holds(node)) {
            problems.Fail("not-resolved", graph.Nodes()[node].Where,
                          "this node was changed after the graph was last resolved; resolve the "
                          "graph before you generate programs");
            return;
        }
    }
    ShaderGeneration(graph, shader, problems).Generate();
}

} // namespace Mox::Host
