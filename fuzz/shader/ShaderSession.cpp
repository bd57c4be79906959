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
#include <string_view>
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

class Provider : public InterfaceNodeProvider
{
public:
    Provider(std::string name, const ShaderType& type) : _name(std::move(name)), _type(type) {}

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t nodeFlags,
                                          ShaderGraph&) override
    {
        if (name != _name)
            return {};
        return ShaderNode::CreateInterfaceParameter(name, nodeFlags, _type);
    }

private:
    std::string _name;
    ShaderType _type;
};

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
    std::vector<const void*> objects;
    objects.reserve(list.size());
    bool isInSet = true;
    for (const auto& object : list) {
        objects.push_back(object.get());
        isInSet = isInSet && set.contains(object);
    }
    std::ranges::sort(objects);
    Claim(isInSet && set.size() == list.size() &&
              std::ranges::adjacent_find(objects) == objects.end(),
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

    /// Returns whether a call succeeds. A failed call must have changed nothing since the last
    /// check.
    template <class Call>
    bool Succeeds(Call call)
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
        return !isRefused;
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
        case 3: {
            const char* tailPort = Pick(ports);
            _edges.push_back(
                boost::make_shared<ShaderEdge>(node, tailPort, other, Pick(ports), false));
            return;
        }
        case 4:
            if (Succeeds([&] { graph.InsertNode(node); }))
                Claim(graph.Nodes.back() == node, "a node is inserted at the end");
            return;
        case 5:
            return FindNode(graph);
        case 6: {
            const std::string tailPort = Pick(ports);
            const std::string headPort = Pick(ports);
            if (Succeeds([&] { graph.ConnectPorts(node, tailPort, other, headPort, false); }))
                CheckLastEdge(graph, *node, tailPort, *other, headPort);
            return;
        }
        case 7: {
            const auto columns = static_cast<std::int32_t>(1 + graph.Providers.size() % 4);
            return graph.Providers.push_back(
                boost::make_shared<Provider>(Pick(names), ShaderType(f, columns, 1, 1)));
        }
        case 8:
            node->Flags = Pick(flags);
            return;
        case 9:
        case 10:
            Succeeds([&] { generator.AddNode(node); });
            return;
        case 11: {
            ShaderNodeHandle found;
            if (Succeeds([&] { found = generator.GetShaderNode(node); }))
                Claim(found == generator.NodeMap.at(node), "an added node is found");
            return;
        }
        case 12:
        case 13:
            return Connect(*filled, node, other);
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
        if (call != 17) {
            if (Succeeds([&] { graph.InsertEdge(edge); }))
                Claim(graph.Edges.back() == edge, "an edge is inserted at the end");
        } else if (use == 0) {
            Succeeds([&] { node.AddOutEdge(edge); });
        } else if (use == 1) {
            Succeeds([&] { node.AddInEdge(edge); });
        } else {
            std::erase(_edges, edge);
        }
    }

    void MakeNode()
    {
        const char* name = Pick(names);
        const ShaderType& type = Pick(types);
        switch (_choices.Below(6)) {
        case 0:
            return _nodes.push_back(ShaderNode::CreateInterfaceParameter(name, Pick(flags), type));
        case 1:
            return _nodes.push_back(ShaderNode::CreateVaryingParameter(name, type));
        case 2:
            return _nodes.push_back(ShaderNode::CreateUniformParameter(name, type));
        case 3:
            return _nodes.push_back(ShaderNode::CreateInterpolantParameter(type));
        default:
            ShaderFunctionBuilder builder;
            builder.AddInput(type, input);
            builder.AddOutput(Pick(types), output);
            _nodes.push_back(builder.Build(ShaderLevel::Automatic, name));
        }
    }

    static void CheckLastEdge(const ShaderGraph& graph, const ShaderNode& tail,
                              std::string_view tailPort, const ShaderNode& head,
                              std::string_view headPort)
    {
        const ShaderEdge& edge = *graph.Edges.back();
        Claim(edge.Tail.lock().get() == &tail && edge.TailPort == tailPort &&
                  edge.Head.lock().get() == &head && edge.HeadPort == headPort && !edge.EdgeFlag,
              "the last edge is the one that was asked for");
    }

    void FindNode(ShaderGraph& graph)
    {
        const ShaderGraph::InterfaceKey key(Pick(names), Pick(flags));
        const ShaderType& type = Pick(types);
        const auto own = graph.InterfaceNodes.find(key);
        const bool isOwn = own != graph.InterfaceNodes.end();
        Claim(graph.HasInterfaceNode(key.first, key.second) == isOwn,
              "the graph knows its own keys");
        ShaderNodeHandle found;
        if (Succeeds([&] { found = graph.FindInterfaceNode(key.first, key.second); })) {
            Claim(isOwn ? found == own->second : found->Name == key.first,
                  "the graph's own node comes before those of providers");
        } else {
            Claim(!isOwn, "the graph finds its own nodes");
        }
        Look();
        if (Succeeds([&] { found = graph.GetInterfaceNode(key.first, key.second, type); }))
            Claim(found->Type == type, "a node that is found has the type asked for");
    }

    /// Every edge that Connect creates must connect ports of the same type.
    void Connect(FilledGraph& filled, const ShaderNodeHandle& tail, const ShaderNodeHandle& head)
    {
        const std::string tailPort = Pick(ports);
        const std::string headPort = Pick(ports);
        const std::size_t edgeCount = filled.Graph.Edges.size();
        const std::size_t nodeCount = filled.Graph.Nodes.size();
        if (!Succeeds([&] { filled.Generator.Connect(tail, tailPort, head, headPort); }))
            return;
        const ShaderNode& from = *filled.Generator.NodeMap.at(tail);
        const ShaderNode& to = *filled.Generator.NodeMap.at(head);
        const bool isConverted = filled.Graph.Nodes.size() != nodeCount;
        Claim(isConverted == (from.GetOutputPort(tailPort).Type != to.GetInputPort(headPort).Type),
              "a conversion is added if the types differ");
        Claim(filled.Graph.Edges.size() == edgeCount + (isConverted ? 2 : 1),
              "a conversion has two edges");
        if (!isConverted)
            return CheckLastEdge(filled.Graph, from, tailPort, to, headPort);
        const ShaderNode& conversion = *filled.Graph.Nodes.back();
        CheckLastEdge(filled.Graph, conversion, "out_value", to, headPort);
        Claim(conversion.GetInputPort("in_value").Type == from.GetOutputPort(tailPort).Type &&
                  conversion.GetOutputPort("out_value").Type == to.GetInputPort(headPort).Type,
              "a conversion leads from one type to the other");
    }

    void Record(ShaderGraphGenerator& generator, const ShaderNodeHandle& node)
    {
        const auto& edge = Pick(_guiEdges);
        const std::string port = Pick(ports);
        if (_choices.Flip()) {
            Succeeds([&] { generator.RecordEdgeTail(edge, node, port); });
            Claim(generator.EdgeMap.at(edge).Tail == node, "the last tail counts");
        } else {
            Succeeds([&] { generator.RecordEdgeHead(edge, node, port); });
            Claim(generator.EdgeMap.at(edge).Heads.back() == node, "heads are in their order");
        }
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
