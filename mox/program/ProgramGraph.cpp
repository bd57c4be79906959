#include "mox/program/ProgramGraph.h"

#include "mox/Text.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

/// An output port of a shader node, by index of the node in the shader graph.
struct Feed
{
    std::size_t Node = nowhere;
    std::size_t Port = 0;
};

bool IsOutput(const ShaderNode& node)
{
    return node.Kind == ShaderNodeKind::CgRegisterParameter && node.Register.IsWritable();
}

/// Finds, from the outputs backwards, what the program computes.
class Collector
{
public:
    Collector(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems)
        : _origins(origins), _problems(problems)
    {
        for (const ShaderNodeHandle& node : graph.Nodes) {
            _index.emplace(node.get(), _shaders.size());
            _shaders.push_back(node.get());
            _feeds.emplace_back(node->Inputs.size());
        }
        for (const ShaderEdgeHandle& edge : graph.Edges)
            Enter(*edge);
        _places.assign(_shaders.size(), nowhere);
        _states.assign(_shaders.size(), State::New);
    }

    std::vector<ProgramNode> Collect()
    {
        for (std::size_t i = 0; i < _shaders.size(); ++i) {
            if (IsOutput(*_shaders[i]))
                Visit(i);
        }
        return std::move(_nodes);
    }

    /// Names that values get from what they are written into; the first one counts.
    std::map<ProgramValue, std::string> FindNames() const
    {
        std::map<ProgramValue, std::string> names;
        for (std::size_t i = 0; i < _shaders.size(); ++i) {
            const bool takesValue =
                _shaders[i]->Kind == ShaderNodeKind::InterfaceParameter || IsOutput(*_shaders[i]);
            if (!takesValue || _states[i] == State::New || _shaders[i]->Name.empty())
                continue;
            const Feed source = SourceOf(_feeds[i].front());
            if (source.Node != nowhere && _places[source.Node] != nowhere)
                names.try_emplace({_places[source.Node], source.Port}, _shaders[i]->Name);
        }
        return names;
    }

    /// Ends of the material by the node and the input that reads through them.
    std::map<std::pair<std::size_t, std::size_t>, const ShaderNode*> FindEnds() const
    {
        std::map<std::pair<std::size_t, std::size_t>, const ShaderNode*> ends;
        for (std::size_t i = 0; i < _shaders.size(); ++i) {
            for (std::size_t input = 0; _places[i] != nowhere && input < _feeds[i].size();
                 ++input) {
                if (const ShaderNode* end = FindEnd(_feeds[i][input]))
                    ends.emplace(std::pair(_places[i], input), end);
            }
        }
        return ends;
    }

    std::vector<std::string> FindDeadNodes() const
    {
        std::vector<std::string> dead;
        if (std::find(_states.begin(), _states.end(), State::New) == _states.end())
            return dead;
        std::unordered_set<std::string> seen;
        for (std::size_t i = 0; i < _shaders.size(); ++i) {
            if (_states[i] != State::New)
                seen.insert(_origins.Of(*_shaders[i]).Node);
        }
        for (const ShaderNode* shader : _shaders) {
            const std::string& node = _origins.Of(*shader).Node;
            if (!node.empty() && seen.insert(node).second)
                dead.push_back(node);
        }
        return dead;
    }

private:
    enum class State
    {
        New,
        Open, ///< being visited: meeting it again closes a circle
        Done,
    };

    struct Visited
    {
        std::size_t Node;
        std::size_t NextInput = 0;
    };

    void Enter(const ShaderEdge& edge)
    {
        const ShaderNodeHandle tail = edge.Tail.lock();
        const ShaderNodeHandle head = edge.Head.lock();
        const std::int32_t from = tail->FindOutputPort(edge.TailPort);
        const std::int32_t to = head->FindInputPort(edge.HeadPort);
        Feed& feed = _feeds[_index.at(head.get())][static_cast<std::size_t>(to)];
        if (feed.Node != nowhere) {
            _problems.Fail("fed-twice", PlaceOf(*tail, _origins),
                           Compose(head->Describe(), " port \"", edge.HeadPort, "\" is fed by ",
                                   tail->Describe(), " and by ", _shaders[feed.Node]->Describe(),
                                   " of node \"", _origins.Of(*_shaders[feed.Node]).Node, "\""));
            return;
        }
        feed = {_index.at(tail.get()), static_cast<std::size_t>(from)};
    }

    /// Depth first without recursion; a node is entered behind all that it reads.
    void Visit(std::size_t root)
    {
        Open(root);
        while (!_path.empty()) {
            Visited& top = _path.back();
            if (top.NextInput == _feeds[top.Node].size()) {
                Close(top.Node);
                _path.pop_back();
                continue;
            }
            const std::size_t source = _feeds[top.Node][top.NextInput++].Node;
            if (source == nowhere)
                continue;
            if (_states[source] == State::New)
                Open(source);
            else if (_states[source] == State::Open)
                ReportCircle(source);
        }
    }

    void Open(std::size_t node)
    {
        _states[node] = State::Open;
        _path.push_back({node});
    }

    void Close(std::size_t node)
    {
        _states[node] = State::Done;
        const ShaderNode& shader = *_shaders[node];
        if (shader.Kind == ShaderNodeKind::InterfaceParameter)
            return;
        ProgramNode entry{&shader, {}};
        for (std::size_t i = 0; i < _feeds[node].size(); ++i) {
            const Feed source = SourceOf(_feeds[node][i]);
            if (source.Node == nowhere) {
                _problems.Fail("unfed-input", PlaceOf(shader, _origins),
                               Compose(shader.Describe(), ": nothing feeds input port \"",
                                       shader.Inputs[i].Name, "\""));
                return;
            }
            if (_places[source.Node] == nowhere)
                return; // the source has a problem of its own, which has been told
            entry.Inputs.push_back({_places[source.Node], source.Port});
        }
        _places[node] = _nodes.size();
        _nodes.push_back(std::move(entry));
    }

    /// Looks through interface parameters.
    Feed SourceOf(Feed feed) const
    {
        std::size_t steps = 0; // parameters may run in a circle
        while (feed.Node != nowhere &&
               _shaders[feed.Node]->Kind == ShaderNodeKind::InterfaceParameter &&
               steps++ < _shaders.size())
            feed = _feeds[feed.Node].front();
        return feed;
    }

    /// Of the interface parameters that a feed is looked up through, the last that takes what
    /// arrives at a port of the material. The feed is that of a node in the program, so it ends.
    const ShaderNode* FindEnd(Feed feed) const
    {
        const ShaderNode* end = nullptr;
        for (; _shaders[feed.Node]->Kind == ShaderNodeKind::InterfaceParameter;
             feed = _feeds[feed.Node].front()) {
            if (!_origins.Of(*_shaders[feed.Node]).Port.empty())
                end = _shaders[feed.Node];
        }
        return end;
    }

    void ReportCircle(std::size_t start)
    {
        std::size_t first = _path.size();
        while (_path[--first].Node != start) {
        }
        // The path runs from readers to what they read.
        std::string text;
        for (std::size_t i = _path.size(); i-- > first;)
            text += Compose(_shaders[_path[i].Node]->Describe(), " -> ");
        _problems.Fail("circle", PlaceOf(*_shaders[start], _origins),
                       Compose("the shader graph runs in a circle: ", text,
                               _shaders[_path.back().Node]->Describe()));
    }

    const ShaderOrigins& _origins;
    ProblemList& _problems;
    std::unordered_map<const ShaderNode*, std::size_t> _index;
    std::vector<const ShaderNode*> _shaders;
    std::vector<std::vector<Feed>> _feeds; ///< for each node and input port
    std::vector<State> _states;
    std::vector<std::size_t> _places; ///< of each node in _nodes
    std::vector<Visited> _path;
    std::vector<ProgramNode> _nodes;
};

} // namespace

ProgramGraph::ProgramGraph(const ShaderGraph& graph, const ShaderOrigins& origins,
                           ProblemList& problems)
{
    Collector collector(graph, origins, problems);
    _nodes = collector.Collect();
    _deadNodes = collector.FindDeadNodes();
    _writtenInto = collector.FindNames();
    _ends = collector.FindEnds();
    _firstNumbers.reserve(_nodes.size() + 1);
    _firstNumbers.push_back(0);
    for (const ProgramNode& node : _nodes)
        _firstNumbers.push_back(_firstNumbers.back() + node.Shader->Outputs.size());
}

const ShaderNode* ProgramGraph::EndBefore(std::size_t node, std::size_t input) const
{
    const auto end = _ends.find({node, input});
    return end == _ends.end() ? nullptr : end->second;
}

std::string ProgramGraph::NameOf(const ProgramValue& value) const
{
    if (const auto name = _writtenInto.find(value); name != _writtenInto.end())
        return name->second;
    constexpr std::string_view direction = "out_";
    const std::string& port = PortOf(value).Name;
    return port.starts_with(direction) ? port.substr(direction.size()) : port;
}

Place PlaceOf(const ShaderNode& node, const ShaderOrigins& origins)
{
    Place place;
    place.Node = origins.Of(node).Node;
    return place;
}

} // namespace Mox::Host
