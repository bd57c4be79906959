#include "mox/program/ShaderGeneration.h"

#include "mox/Text.h"
#include "mox/host/LibraryCall.h"
#include "mox/program/StandInNames.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

class ShaderGeneration
{
public:
    ShaderGeneration(const MaterialGraph& graph, GeneratedShader& shader, ProblemList& problems)
        : _graph(graph), _shader(shader), _problems(problems), _generator(shader.Graph)
    {}

    void Generate()
    {
        const StandInNames names(_graph);
        _shader.OriginalNames = names.Originals();
        for (const MaterialGraph::Node& node : _graph.Nodes()) {
            try {
                CallLibrary(node.Where, [&] { node.Gui->GenerateShader(_generator); });
            } catch (const HostError& error) {
                _problems.Fail("node-failed", error.Where, names.Translate(error.Message));
                _failed.insert(node.Gui.get());
            }
            NoteOrigins({node.Id, node.Gui->GetType()});
        }
        JoinEdges();
    }

private:
    struct NodePlace
    {
        std::size_t Position;
        const std::string* Id;
    };

    struct Join
    {
        std::size_t Head;
        std::int32_t HeadPort;
        const MaterialGraph::Edge* Edge;
    };

    /// The final pass: lays the recorded edges between the shader nodes that the authoring nodes
    /// became. It goes by node and port, so that the result hangs neither on addresses nor on the
    /// order in which the edges were made.
    ///
    /// An edge without a recorded tail or without recorded heads joins nothing and is skipped: its
    /// output or input took no part in what the node wrote, and the value is read nowhere.
    void JoinEdges()
    {
        for (const MaterialGraph::Node& node : _graph.Nodes())
            _places.emplace(node.Gui.get(), NodePlace{_places.size(), &node.Id});
        std::vector<Join> joins;
        for (const MaterialGraph::Edge& edge : _graph.Edges()) {
            if (!_generator.EdgeMap.contains(edge.Gui))
                continue;
            const auto head = edge.Gui->Head.lock();
            joins.push_back(
                {_places.at(head.get()).Position, head->FindInputPort(edge.Gui->HeadPort), &edge});
        }
        std::sort(joins.begin(), joins.end(), [](const Join& a, const Join& b) {
            return std::tie(a.Head, a.HeadPort) < std::tie(b.Head, b.HeadPort);
        });
        for (const Join& join : joins)
            JoinEdge(*join.Edge);
    }

    void JoinEdge(const MaterialGraph::Edge& edge)
    {
        const ShaderEdgeRecord& record = _generator.EdgeMap.at(edge.Gui);
        const bool hasFailed = _failed.contains(edge.Gui->Tail.lock().get());
        if (!record.Tail && !hasFailed)
            return;
        for (std::size_t i = 0; i < record.Heads.size(); ++i) {
            if (hasFailed) {
                FeedStandIn(edge, record.Heads[i], record.HeadPorts[i]);
                continue;
            }
            try {
                CallLibrary(edge.Where, [&] {
                    _generator.Connect(record.Tail, record.TailPort, record.Heads[i],
                                       record.HeadPorts[i]);
                });
            } catch (const HostError& error) {
                _problems.Fail("edge-failed", error.Where,
                               Compose("edge from \"", IdOf(edge.Gui->Tail), "\" port \"",
                                       edge.Gui->TailPort, "\" to \"", IdOf(edge.Gui->Head),
                                       "\" port \"", edge.Gui->HeadPort, "\": ", error.Message));
                FeedStandIn(edge, record.Heads[i], record.HeadPorts[i]);
            }
        }
        NoteOrigins({IdOf(edge.Gui->Head), "conversion"});
    }

    /// Feeds an input with a uniform in place of the value that a failure keeps from it, so that
    /// the rest of the program can be checked as if that value were there.
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
        const auto tail = edge.Gui->Tail.lock();
        NoteOrigins({IdOf(tail), tail->GetType()});
    }

    const std::string& IdOf(const boost::weak_ptr<Materials::GuiNode>& node) const
    {
        return *_places.at(node.lock().get()).Id;
    }

    /// Gives an origin to the nodes that the graph has taken since the last call.
    void NoteOrigins(const ShaderOrigin& origin)
    {
        auto node = _shader.Graph.Nodes.rbegin();
        for (std::size_t i = _shader.Graph.Nodes.size(); i > _noted; --i, ++node) {
            // What a provider inserted on the way is the environment's.
            if (_generator.NodeMap.contains(*node) || (*node)->Kind == ShaderNodeKind::Function)
                _shader.Origins.Set(**node, origin);
        }
        _noted = _shader.Graph.Nodes.size();
    }

    const MaterialGraph& _graph;
    GeneratedShader& _shader;
    ProblemList& _problems;
    ShaderGraphGenerator _generator;
    std::unordered_map<const Materials::GuiNode*, NodePlace> _places;
    std::unordered_set<const Materials::GuiNode*> _failed;
    std::size_t _standIns = 0;
    std::size_t _noted = 0; ///< nodes of the graph that have their origins
};

} // namespace

void GenerateShaderGraph(const MaterialGraph& graph, GeneratedShader& shader, ProblemList& problems)
{
    ShaderGeneration(graph, shader, problems).Generate();
}

} // namespace Mox::Host
