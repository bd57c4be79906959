#include "fuzz/shader/ShaderSession.h"

#include "mox/ShaderError.h"
#include "mox/authoring/GuiEdge.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Claim.h"

#include <boost/smart_ptr/bad_weak_ptr.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

using Mox::Materials::GuiEdge;

namespace {

constexpr auto f = ComponentType::Float;
constexpr auto h = ComponentType::Half;

const ShaderType types[] = {{f, 1, 1, 1}, {f, 3, 1, 1}, {f, 4, 1, 1},
                            {h, 1, 1, 1}, {h, 3, 1, 1}, {ComponentType::Sampler2D, 1, 1, 1},
                            {f, 3, 1, 2}, {f, 4, 4, 1}, {f, 3, 4, 1}};

// Most names are too long for a string's internal buffer.
constexpr const char* input = "inputOfAFunction";
constexpr const char* output = "outputOfAFunction";
constexpr const char* ports[] = {input, output, "read", "write", "portThatNobodyHas"};
constexpr const char* names[] = {"firstOfSomeNames", "secondOfSomeNames", "third"};
constexpr std::int32_t flags[] = {0, 1, -1};

struct FilledGraph
{
    ShaderGraph Graph;
    ShaderGraphGenerator Generator{Graph};
};

/// A hash of the contents of graphs, generators and nodes.
class Contents
{
public:
    void Add(const FilledGraph& filled)
    {
        Add(filled.Graph.NodeSet.size());
        Add(filled.Graph.EdgeSet.size());
        AddObjects(filled.Graph.Nodes);
        AddObjects(filled.Graph.Edges);
        for (const ShaderNodeHandle& node : filled.Graph.Nodes)
            AddEntries(*node);
        for (const auto& [key, node] : filled.Graph.InterfaceNodes) {
            Add(key.first);
            Add(static_cast<std::uintptr_t>(key.second));
            Add(node.get());
        }
        for (const auto& [given, standing] : filled.Generator.NodeMap) {
            Add(given.get());
            Add(standing.get());
        }
        for (const auto& [edge, record] : filled.Generator.EdgeMap) {
            Add(edge.get());
            Add(record.Tail.get());
            Add(record.TailPort);
            AddObjects(record.Heads);
            for (const std::string& port : record.HeadPorts)
                Add(port);
        }
    }

    void AddEntries(const ShaderNode& node)
    {
        for (const auto* entries : {&node.InEdges, &node.OutEdges}) {
            Add(entries->size());
            for (const auto& entry : *entries)
                Add(entry.lock().get());
        }
    }

    bool operator==(const Contents&) const = default;

private:
    void Add(std::uintptr_t number)
    {
        _hash = (std::rotl(_hash, 23) ^ number) * 0x9E3779B97F4A7C15u;
    }
    void Add(const void* object) { Add(reinterpret_cast<std::uintptr_t>(object)); }
    void Add(const std::string& text) { Add(std::hash<std::string>()(text)); }

    template <class Handles>
    void AddObjects(const Handles& handles)
    {
        Add(handles.size());
        for (const auto& handle : handles)
            Add(handle.get());
    }

    std::uint64_t _hash = 0;
};

/// Counts the occurrences of an edge in a node's list, even if the edge no longer exists.
template <class Entries>
std::ptrdiff_t CountEntries(const Entries& entries, const boost::weak_ptr<ShaderEdge>& edge)
{
    return std::count_if(entries.begin(), entries.end(), [&](const auto& entry) {
        return !entry.owner_before(edge) && !edge.owner_before(entry);
    });
}

template <class List, class Set>
void CheckSet(const List& list, const Set& set)
{
    Claim(std::ranges::is_permutation(list, set),
          "list and set agree, and nothing is in them twice");
}

void CheckEntries(const ShaderNode& node)
{
    for (const auto* entries : {&node.InEdges, &node.OutEdges}) {
        for (const auto& entry : *entries)
            Claim(CountEntries(*entries, entry) == 1, "a node has each edge once");
    }
}

void CheckGraph(const ShaderGraph& graph)
{
    CheckSet(graph.Nodes, graph.NodeSet);
    CheckSet(graph.Edges, graph.EdgeSet);
    std::size_t keyed = 0;
    for (const ShaderNodeHandle& node : graph.Nodes) {
        CheckEntries(*node);
        keyed += node->Kind == ShaderNodeKind::InterfaceParameter ? 1 : 0;
    }
    for (const ShaderEdgeHandle& edge : graph.Edges) {
        const ShaderNodeHandle tail = edge->Tail.lock();
        const ShaderNodeHandle head = edge->Head.lock();
        Claim(tail != head && graph.NodeSet.contains(tail) && graph.NodeSet.contains(head),
              "an edge joins two nodes of its graph");
        Claim(CountEntries(tail->OutEdges, edge) == 1 && CountEntries(head->InEdges, edge) == 1,
              "both ends know their edge");
    }
    Claim(graph.InterfaceNodes.size() == keyed, "each interface parameter has its key");
    for (const auto& [key, node] : graph.InterfaceNodes) {
        Claim(graph.NodeSet.contains(node) && node->Name == key.first,
              "a key leads to a node of the graph");
    }
}

void CheckGenerator(const ShaderGraphGenerator& generator)
{
    for (const auto& [given, standing] : generator.NodeMap)
        Claim(generator.Graph->NodeSet.contains(standing), "an added node is in the graph");
    for (const auto& [edge, record] : generator.EdgeMap)
        Claim(record.Heads.size() == record.HeadPorts.size(), "each head has its port");
}

class Session
{
public:
    Session(Choices choices, const CallMaker& makeCall) : _choices(choices), _makeCall(makeCall)
    {
        for (auto& graph : _graphs)
            graph = std::make_unique<FilledGraph>();
        for (auto& edge : _guiEdges)
            edge = boost::make_shared<GuiEdge>();
        _contents = ContentsNow();
    }

    void Run()
    {
        constexpr int mostSteps = 150;
        for (int step = 0; step < mostSteps && !_choices.IsAtEnd(); ++step) {
            Step();
            Look();
        }
    }

private:
    template <class Container>
    auto& Pick(Container& container)
    {
        return container[_choices.Below(std::size(container))];
    }

    template <class Handle>
    Handle PickHandle(const std::vector<Handle>& handles)
    {
        return handles.empty() ? Handle() : Pick(handles);
    }

    Contents ContentsNow() const
    {
        Contents contents;
        for (const auto& graph : _graphs)
            contents.Add(*graph);
        for (const ShaderNodeHandle& node : _nodes)
            contents.AddEntries(*node);
        return contents;
    }

    /// Checks that everything is consistent, unless nothing has changed since the last check.
    void Look()
    {
        const Contents now = ContentsNow();
        if (now == _contents)
            return;
        _contents = now;
        for (const auto& graph : _graphs) {
            CheckGraph(graph->Graph);
            CheckGenerator(graph->Generator);
        }
        for (const ShaderNodeHandle& node : _nodes)
            CheckEntries(*node);
    }

    /// Makes a call. If it fails, it must have changed nothing since the last check.
    void Attempt(const std::function<void()>& call)
    {
        bool isRefused = false;
        const auto attempt = [&] {
            try {
                call();
            } catch (const ShaderError& error) {
                Claim(!error.Message.empty(), "a refusal says why");
                isRefused = true;
            } catch (const boost::bad_weak_ptr&) {
                isRefused = true;
            }
        };
        const auto compare = [&] {
            Claim(ContentsNow() == _contents, "a call that fails changes nothing");
        };
        _makeCall(attempt, compare);
        if (isRefused)
            compare();
    }

    void Step()
    {
        std::unique_ptr<FilledGraph>& filled = Pick(_graphs);
        ShaderGraph& graph = filled->Graph;
        ShaderGraphGenerator& generator = filled->Generator;
        const std::size_t call = _choices.Below(20);
        const ShaderNodeHandle node = PickHandle(_nodes);
        if (call < 3 || !node)
            return MakeNode();
        const ShaderNodeHandle other = PickHandle(_nodes);
        const ShaderEdgeHandle edge = PickHandle(_edges);
        switch (call) {
        case 3:
            return MakeEdge(node, other);
        case 4:
            return Attempt([&] { graph.InsertNode(node); });
        case 5:
            return FindNode(graph);
        case 6:
        case 12:
        case 13:
            return Connect(*filled, call == 6, node, other);
        case 7:
        case 8:
            node->Flags = Pick(flags);
            return;
        case 9:
        case 10:
            return Attempt([&] { generator.AddNode(node); });
        case 11:
            return Attempt([&] { generator.GetShaderNode(node); });
        case 14:
            return Record(generator, node);
        case 15:
            // Destroys the generator and the graph, with everything that has no other owner.
            if (_choices.Flip())
                filled = std::make_unique<FilledGraph>();
            return;
        case 16:
            std::erase(_nodes, node);
            return;
        default:
            if (edge)
                StepWithEdge(graph, call, *node, edge);
        }
    }

    void StepWithEdge(ShaderGraph& graph, std::size_t call, ShaderNode& node,
                      const ShaderEdgeHandle& edge)
    {
        const std::size_t use = _choices.Below(8);
        if (call != 17)
            Attempt([&] { graph.InsertEdge(edge); });
        else if (use == 0)
            Attempt([&] { node.AddOutEdge(edge); });
        else if (use == 1)
            Attempt([&] { node.AddInEdge(edge); });
        else
            std::erase(_edges, edge);
    }

    void MakeNode()
    {
        const char* name = Pick(names);
        const ShaderType& type = Pick(types);
        const std::size_t kind = _choices.Below(6);
        const std::int32_t nodeFlags = kind == 0 ? Pick(flags) : 0;
        const ShaderType& result = kind > 3 ? Pick(types) : type;
        Attempt([&] { _nodes.push_back(CreateNode(kind, name, nodeFlags, type, result)); });
    }

    static ShaderNodeHandle CreateNode(std::size_t kind, const char* name, std::int32_t nodeFlags,
                                       const ShaderType& type, const ShaderType& result)
    {
        switch (kind) {
        case 0:
            return ShaderNode::CreateInterfaceParameter(name, nodeFlags, type);
        case 1:
            return ShaderNode::CreateVaryingParameter(name, type);
        case 2:
            return ShaderNode::CreateUniformParameter(name, type);
        case 3:
            return ShaderNode::CreateInterpolantParameter(type);
        default:
            ShaderFunctionBuilder builder;
            builder.AddInput(type, input);
            builder.AddOutput(result, output);
            return builder.Build(ShaderLevel::Automatic, name);
        }
    }

    void MakeEdge(const ShaderNodeHandle& tail, const ShaderNodeHandle& head)
    {
        const char* tailPort = Pick(ports);
        _edges.push_back(boost::make_shared<ShaderEdge>(tail, tailPort, head, Pick(ports), false));
    }

    void FindNode(ShaderGraph& graph)
    {
        const ShaderGraph::InterfaceKey key(Pick(names), Pick(flags));
        const ShaderType& type = Pick(types);
        Attempt([&] { graph.FindInterfaceNode(key.first, key.second); });
        Attempt([&] { graph.GetInterfaceNode(key.first, key.second, type); });
    }

    void Connect(FilledGraph& filled, bool isPlain, const ShaderNodeHandle& tail,
                 const ShaderNodeHandle& head)
    {
        const std::string tailPort = Pick(ports);
        const std::string headPort = Pick(ports);
        Attempt([&] {
            if (isPlain)
                filled.Graph.ConnectPorts(tail, tailPort, head, headPort, false);
            else
                filled.Generator.Connect(tail, tailPort, head, headPort);
        });
    }

    void Record(ShaderGraphGenerator& generator, const ShaderNodeHandle& node)
    {
        const auto& edge = Pick(_guiEdges);
        const std::string port = Pick(ports);
        const bool isTail = _choices.Flip();
        Attempt([&] {
            if (isTail)
                generator.RecordEdgeTail(edge, node, port);
            else
                generator.RecordEdgeHead(edge, node, port);
        });
    }

    Choices _choices;
    const CallMaker& _makeCall;
    std::vector<ShaderNodeHandle> _nodes; ///< owned by the session itself, like the edges
    std::vector<ShaderEdgeHandle> _edges;
    boost::shared_ptr<GuiEdge> _guiEdges[4];
    std::unique_ptr<FilledGraph> _graphs[2];
    Contents _contents; ///< at the last check
};

} // namespace

void RunShaderSession(Choices choices, const CallMaker& makeCall)
{
    Session(choices, makeCall).Run();
}
