#include "mox/program/ProgramGraph.h"

#include "mox/Text.h"
#include "mox/cg/Type.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

/// An output port of a shader node, with the index of the node in the shader graph.
struct Feed
{
    std::size_t Node = nowhere;
    std::size_t Port = 0;
};

bool IsOutput(const ShaderNode& node)
{
    return node.Kind == ShaderNodeKind::CgRegisterParameter && node.Register.IsWritable();
}

/// Returns the stage that a node must run in, or Automatic.
ShaderLevel LevelOf(const ShaderNode& node)
{
    switch (node.Kind) {
    case ShaderNodeKind::Function:
        return node.Level == ShaderLevel::Vertex || node.Level == ShaderLevel::Fragment
                   ? node.Level
                   : ShaderLevel::Automatic;
    case ShaderNodeKind::VaryingParameter:
    case ShaderNodeKind::InterpolantParameter:
        return ShaderLevel::Vertex;
    case ShaderNodeKind::CgRegisterParameter:
        return static_cast<ShaderLevel>(GetRegisterInfo(node.Register.Type).Level);
    case ShaderNodeKind::UniformParameter:
    case ShaderNodeKind::InterfaceParameter:
        break;
    }
    return ShaderLevel::Automatic;
}

std::string DescribeEdge(const ShaderEdge& edge, const ShaderNode& tail, const ShaderNode& head)
{
    return Compose("the edge from port \"", edge.TailPort, "\" of ", tail.Describe(), " to port \"",
                   edge.HeadPort, "\" of ", head.Describe(), ": ");
}

/// Whether a value can be passed to a parameter. Connect only creates edges between equal types,
/// but a plug-in can create edges itself.
bool IsPassedAs(const ShaderType& value, const ShaderType& parameter)
{
    if (value == parameter)
        return true;
    Cg::Type from;
    Cg::Type to;
    return Cg::FindBuiltInType(value.Format(), from) &&
           Cg::FindBuiltInType(parameter.Format(), to) && Cg::Converts(from, to);
}

bool HaveSamePorts(const std::vector<ShaderPort>& a, const std::vector<ShaderPort>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ShaderPort& left, const ShaderPort& right) {
                          return left.Name == right.Name && left.Type == right.Type;
                      });
}

/// Merges functions with equal name, parameters and body into one definition. Their levels may
/// differ.
class FunctionSet
{
public:
    /// Returns the first function passed to this set that equals the given one.
    /// @param function must outlive the set
    const ShaderNode& DefinitionOf(const ShaderNode& function)
    {
        return **_definitions.insert(&function).first;
    }

private:
    struct Hash
    {
        std::size_t operator()(const ShaderNode* function) const
        {
            return std::hash<std::string>()(function->Code);
        }
    };

    struct Same
    {
        bool operator()(const ShaderNode* a, const ShaderNode* b) const
        {
            return a->Code == b->Code && a->Name == b->Name &&
                   HaveSamePorts(a->Inputs, b->Inputs) && HaveSamePorts(a->Outputs, b->Outputs);
        }
    };

    std::unordered_set<const ShaderNode*, Hash, Same> _definitions;
};

/// Collects the nodes of the program, starting from its outputs.
class Collector
{
public:
    Collector(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems)
        : _origins(origins), _problems(problems)
    {
        for (const ShaderNodeHandle& node : graph.Nodes)
            AddSource(*node);
        for (const ShaderEdgeHandle& edge : graph.Edges)
            Enter(*edge);
        _places.assign(_sources.size(), nowhere);
        _states.assign(_sources.size(), State::New);
    }

    std::vector<ProgramNode> Collect()
    {
        for (std::size_t i = 0; i < _sources.size(); ++i) {
            if (IsOutput(*_sources[i].Shader))
                Visit(i);
        }
        return std::move(_nodes);
    }

    /// Names values after what they are written to; the first name counts.
    std::map<ProgramValue, std::string> FindNames() const
    {
        std::map<ProgramValue, std::string> names;
        for (std::size_t i = 0; i < _sources.size(); ++i) {
            const Source& target = _sources[i];
            const bool takesValue = target.IsInterface || IsOutput(*target.Shader);
            if (!takesValue || _states[i] == State::New || target.Shader->Name.empty())
                continue;
            const Feed source = SourceOf(_feeds[target.FirstFeed]);
            if (source.Node != nowhere && _places[source.Node] != nowhere)
                names.try_emplace({_places[source.Node], source.Port}, target.Shader->Name);
        }
        return names;
    }

    /// Returns, by node and input, the output node's input through which each value is read.
    std::map<std::pair<std::size_t, std::size_t>, const ShaderOrigin*> FindEnds() const
    {
        std::map<std::pair<std::size_t, std::size_t>, const ShaderOrigin*> ends;
        for (std::size_t i = 0; i < _sources.size(); ++i) {
            for (std::size_t input = 0; _places[i] != nowhere && input < _sources[i].InputCount;
                 ++input) {
                if (const ShaderOrigin* end = FindEnd(FeedOf(i, input)))
                    ends.emplace(std::pair(_places[i], input), end);
            }
        }
        return ends;
    }

    std::vector<std::string> FindDeadNodes() const
    {
        std::vector<std::string> dead;
        std::unordered_set<std::string_view> seen;
        for (std::size_t i = 0; i < _sources.size(); ++i) {
            if (_states[i] != State::New)
                seen.insert(_sources[i].Origin->Node);
        }
        for (const Source& source : _sources) {
            const std::string& node = source.Origin->Node;
            if (!node.empty() && seen.insert(node).second)
                dead.push_back(node);
        }
        return dead;
    }

private:
    enum class State
    {
        New,
        Open, ///< being visited; reaching it again means a cycle
        Done,
    };

    /// A node of the shader graph.
    struct Source
    {
        const ShaderNode* Shader;
        const ShaderNode* Definition;
        const ShaderOrigin* Origin;
        ShaderLevel Level;
        bool IsInterface;
        std::size_t FirstFeed; ///< index of its first input's feed
        std::size_t InputCount;
    };

    struct Visited
    {
        std::size_t Node;
        std::size_t NextInput = 0;
    };

    Feed& FeedOf(std::size_t node, std::size_t input)
    {
        return _feeds[_sources[node].FirstFeed + input];
    }
    const Feed& FeedOf(std::size_t node, std::size_t input) const
    {
        return _feeds[_sources[node].FirstFeed + input];
    }

    void AddSource(const ShaderNode& node)
    {
        const bool isFunction = node.Kind == ShaderNodeKind::Function;
        _index.emplace(&node, _sources.size());
        _sources.push_back({&node, isFunction ? &_functions.DefinitionOf(node) : &node,
                            &_origins.Of(node), LevelOf(node),
                            node.Kind == ShaderNodeKind::InterfaceParameter, _feeds.size(),
                            node.Inputs.size()});
        _feeds.resize(_feeds.size() + node.Inputs.size());
    }

    void Enter(const ShaderEdge& edge)
    {
        const ShaderNodeHandle tail = edge.Tail.lock();
        const ShaderNodeHandle head = edge.Head.lock();
        const std::int32_t from = tail->FindOutputPort(edge.TailPort);
        const std::int32_t to = head->FindInputPort(edge.HeadPort);
        if (from < 0 || to < 0) {
            const ShaderNode& lacking = from < 0 ? *tail : *head;
            _problems.Fail("edge-failed", PlaceOf(_origins.Of(lacking)),
                           Compose(DescribeEdge(edge, *tail, *head), "the ",
                                   from < 0 ? "output" : "input", " port does not exist"));
            return;
        }
        const ShaderType& given = tail->Outputs[static_cast<std::size_t>(from)].Type;
        const ShaderType& wanted = head->Inputs[static_cast<std::size_t>(to)].Type;
        if (!IsPassedAs(given, wanted)) {
            _problems.Fail("edge-failed", PlaceOf(_origins.Of(*head)),
                           Compose(DescribeEdge(edge, *tail, *head), "cannot convert ",
                                   given.Format(), " to ", wanted.Format()));
            return;
        }
        Feed& feed = FeedOf(_index.at(head.get()), static_cast<std::size_t>(to));
        if (feed.Node != nowhere) {
            const Source& other = _sources[feed.Node];
            _problems.Fail("fed-twice", PlaceOf(_origins.Of(*tail)),
                           Compose(head->Describe(), " port \"", edge.HeadPort, "\" is fed by ",
                                   tail->Describe(), " and by ", other.Shader->Describe(),
                                   " of node \"", other.Origin->Node, "\""));
            return;
        }
        feed = {_index.at(tail.get()), static_cast<std::size_t>(from)};
    }

    /// Visits nodes depth first without recursion; a node is added after everything that it reads.
    void Visit(std::size_t root)
    {
        Open(root);
        while (!_path.empty()) {
            Visited& top = _path.back();
            if (top.NextInput == _sources[top.Node].InputCount) {
                Close(top.Node);
                _path.pop_back();
                continue;
            }
            const std::size_t source = FeedOf(top.Node, top.NextInput++).Node;
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
        const Source& source = _sources[node];
        if (source.IsInterface)
            return;
        ProgramNode entry{source.Shader, source.Definition, source.Origin, source.Level, {}};
        for (std::size_t i = 0; i < source.InputCount; ++i) {
            const Feed feed = SourceOf(FeedOf(node, i));
            if (feed.Node == nowhere) {
                _problems.Fail("unfed-input", PlaceOf(*source.Origin),
                               Compose(source.Shader->Describe(), ": nothing feeds input port \"",
                                       source.Shader->Inputs[i].Name, "\""));
                return;
            }
            if (_places[feed.Node] == nowhere)
                return; // the source has its own problem, already reported
            entry.Inputs.push_back({_places[feed.Node], feed.Port});
        }
        _places[node] = PlaceFor(entry);
        if (_places[node] == _nodes.size())
            _nodes.push_back(std::move(entry));
    }

    /// Returns the index of the node in the program. Parameters of the same name are one value,
    /// whichever nodes read it.
    std::size_t PlaceFor(const ProgramNode& node)
    {
        if (!IsParameter(*node.Shader))
            return _nodes.size();
        const bool isBinding = !node.Origin->Node.empty();
        const auto known =
            _parameters.try_emplace({node.Shader->Kind, isBinding, NameOf(node)}, _nodes.size())
                .first;
        const bool isSame = known->second < _nodes.size() &&
                            _nodes[known->second].Shader->Type == node.Shader->Type;
        return isSame ? known->second : _nodes.size();
    }

    /// Follows interface parameters to the value written to them.
    Feed SourceOf(Feed feed) const
    {
        std::size_t steps = 0; // parameters may form a cycle
        while (feed.Node != nowhere && _sources[feed.Node].IsInterface && steps++ < _sources.size())
            feed = FeedOf(feed.Node, 0);
        return feed;
    }

    /// Follows a feed through interface parameters and returns the origin of the last one that
    /// represents an input of an output node. The loop terminates because the feed belongs to a
    /// node in the program, which is free of cycles.
    const ShaderOrigin* FindEnd(Feed feed) const
    {
        const ShaderOrigin* end = nullptr;
        for (; _sources[feed.Node].IsInterface; feed = FeedOf(feed.Node, 0)) {
            if (!_sources[feed.Node].Origin->Port.empty())
                end = _sources[feed.Node].Origin;
        }
        return end;
    }

    void ReportCircle(std::size_t start)
    {
        std::size_t first = _path.size();
        while (_path[--first].Node != start) {
        }
        // The path leads from each node to the node that it reads.
        std::string text;
        for (std::size_t i = _path.size(); i-- > first;)
            text += Compose(_sources[_path[i].Node].Shader->Describe(), " -> ");
        _problems.Fail("circle", PlaceOf(*_sources[start].Origin),
                       Compose("the shader graph contains a cycle: ", text,
                               _sources[_path.back().Node].Shader->Describe()));
    }

    const ShaderOrigins& _origins;
    ProblemList& _problems;
    std::unordered_map<const ShaderNode*, std::size_t> _index;
    std::vector<Source> _sources;
    std::vector<Feed> _feeds; ///< of all input ports
    FunctionSet _functions;
    std::vector<State> _states;
    std::vector<std::size_t> _places; ///< index in _nodes of each node
    std::vector<Visited> _path;
    std::vector<ProgramNode> _nodes;
    std::map<std::tuple<ShaderNodeKind, bool, std::string>, std::size_t>
        _parameters; ///< index of each parameter in _nodes, by kind, owner and name
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
    _firstNumbers.push_back(0);
    for (const ProgramNode& node : _nodes)
        _firstNumbers.push_back(_firstNumbers.back() + node.Shader->Outputs.size());
}

const ShaderOrigin* ProgramGraph::EndBefore(std::size_t node, std::size_t input) const
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

bool IsSampler(const ShaderType& type)
{
    return type.Component >= ComponentType::Sampler1D &&
           type.Component <= ComponentType::SamplerRect;
}

bool IsParameter(const ShaderNode& node)
{
    return node.Kind == ShaderNodeKind::UniformParameter ||
           node.Kind == ShaderNodeKind::VaryingParameter;
}

const std::string& NameOf(const ProgramNode& parameter)
{
    return parameter.Origin->Name.empty() ? parameter.Shader->Name : parameter.Origin->Name;
}

Place PlaceOf(const ShaderOrigin& origin)
{
    return {{}, 0, origin.Node};
}

} // namespace Mox::Host
