#include "fuzz/shader/ShaderSession.h"

#include "fuzz/shader/GraphModel.h"
#include "mox/ShaderError.h"
#include "mox/authoring/GuiEdge.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Claim.h"

#include <boost/smart_ptr/bad_weak_ptr.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <memory>
#include <type_traits>

using Mox::Materials::GuiEdge;

namespace {

constexpr auto f = ComponentType::Float;
constexpr auto h = ComponentType::Half;

const ShaderType types[] = {{f, 1, 1, 1}, {f, 3, 1, 1}, {f, 4, 1, 1},
                            {h, 1, 1, 1}, {h, 3, 1, 1}, {ComponentType::Sampler2D, 1, 1, 1},
                            {f, 3, 1, 2}, {f, 4, 4, 1}, {f, 3, 4, 1}};

// Most names are too long for a string's own buffer.
constexpr const char* input = "inputOfAFunction";
constexpr const char* output = "outputOfAFunction";
constexpr const char* ports[] = {input, output, "read", "write", "portThatNobodyHas"};
constexpr const char* names[] = {"firstOfSomeNames", "secondOfSomeNames", "third"};
constexpr std::int32_t flags[] = {0, 1, -1};

class Provider : public InterfaceNodeProvider
{
public:
    explicit Provider(ProviderModel does) : Does(std::move(does)) {}

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t nodeFlags,
                                          ShaderGraph&) override
    {
        ++Does.Asked;
        if (name != Does.Name)
            return {};
        return ShaderNode::CreateInterfaceParameter(name, nodeFlags, Does.Type);
    }

    ProviderModel Does;
};

/// What a call gives, and the failure with which it ends.
template <class Result, class Call>
std::pair<Result, std::string> Try(Call call)
{
    try {
        if constexpr (!std::is_void_v<decltype(call())>)
            return {call(), ""};
        else
            call();
    } catch (const ShaderError& error) {
        return {Result(), error.Message};
    } catch (const boost::bad_weak_ptr&) {
        return {Result(), "bad_weak_ptr"};
    }
    return {};
}

/// The real objects of a GraphModel.
struct RealGraph
{
    ShaderGraph Graph;
    ShaderGraphGenerator Generator{Graph};
};

class Session
{
public:
    Session(Choices choices, const CallMaker& makeCall) : _choices(choices), _makeCall(makeCall)
    {
        for (auto& graph : _graphs)
            graph = std::make_unique<RealGraph>();
        for (auto& edge : _guiEdges)
            edge = boost::make_shared<GuiEdge>();
    }

    void Run()
    {
        constexpr int mostSteps = 150;
        for (int step = 0; step < mostSteps && !_choices.IsAtEnd(); ++step) {
            Step();
            CompareAll();
        }
    }

private:
    template <class Container>
    const auto& Pick(const Container& container)
    {
        return container[_choices.Below(std::size(container))];
    }

    /// A node or edge that the program holds, or -1.
    template <class Model>
    int PickHeld(const std::vector<Model>& models)
    {
        std::vector<int> held;
        for (std::size_t i = 0; i < models.size(); ++i) {
            if (models[i].IsHeld)
                held.push_back(static_cast<int>(i));
        }
        return held.empty() ? -1 : Pick(held);
    }

    template <class Handle>
    static Handle& At(std::vector<Handle>& handles, int number)
    {
        return handles[static_cast<std::size_t>(number)];
    }

    ShaderNodeHandle& Node(int number) { return At(_nodes, number); }
    ShaderEdgeHandle& Edge(int number) { return At(_edges, number); }

    /// Makes a call on the model and the real one, and compares what comes out.
    template <class ModelCall, class Call>
    void Expect(ModelCall modelCall, Call call)
    {
        std::pair<ShaderNodeHandle, std::string> outcome;
        const auto attempt = [&] {
            ForEachProvider(
                [](ProviderModel& real, ProviderModel& model) { real.Asked = model.Asked = 0; });
            outcome = Try<ShaderNodeHandle>(call);
        };
        _makeCall(attempt, [this] { CompareAll(); });
        const auto& [node, failure] = outcome;
        const auto [expected, expectedFailure] = Try<Found>(modelCall);
        ClaimEqual(failure, expectedFailure, "the call says what it must");
        if (expected.Node >= 0)
            Claim(node == At(_weakNodes, expected.Node).lock(),
                  "the call gives the node that it must");
        if (expected.Provided)
            Claim(node && node->Type == *expected.Provided, "the last provider answers");
        ForEachProvider([](const ProviderModel& real, const ProviderModel& model) {
            Claim(real.Asked == model.Asked, "providers are asked last first");
        });
    }

    /// Calls for what each provider is, in fact and in the model.
    template <class Call>
    void ForEachProvider(Call call)
    {
        for (std::size_t i = 0; i < _model.Graphs.size(); ++i) {
            auto model = _model.Graphs[i].Providers.begin();
            for (const auto& provider : _graphs[i]->Graph.Providers)
                call(static_cast<Provider&>(*provider).Does, *model++);
        }
    }

    void Step()
    {
        const std::size_t which = _choices.Below(2);
        GraphModel& model = _model.Graphs[which];
        ShaderGraph& graph = _graphs[which]->Graph;
        ShaderGraphGenerator& generator = _graphs[which]->Generator;
        const std::size_t call = _choices.Below(20);
        const int node = PickHeld(_model.Nodes);
        if (call < 3 || node < 0)
            return MakeNode();
        const int other = PickHeld(_model.Nodes);
        const int edge = PickHeld(_model.Edges);
        switch (call) {
        case 3:
            return MakeEdge(node, other);
        case 4:
            return Expect([&] { _model.InsertNode(model, node); },
                          [&] { graph.InsertNode(Node(node)); });
        case 5:
            return FindNode(model, graph);
        case 6: {
            const EdgeModel ends{node, Pick(ports), other, Pick(ports), false};
            return Expect([&] { _model.ConnectPorts(model, ends); },
                          [&] {
                              graph.ConnectPorts(Node(node), ends.TailPort, Node(other),
                                                 ends.HeadPort, false);
                          });
        }
        case 7: {
            const auto columns = static_cast<std::int32_t>(1 + model.Providers.size() % 4);
            model.Providers.push_back({Pick(names), ShaderType(f, columns, 1, 1)});
            return graph.Providers.push_back(boost::make_shared<Provider>(model.Providers.back()));
        }
        case 8: {
            const std::int32_t newFlags = Pick(flags);
            _model.Node(node).Flags = newFlags;
            Node(node)->Flags = newFlags;
            return;
        }
        case 9:
        case 10:
            return Expect([&] { _model.AddNode(model, node); },
                          [&] { generator.AddNode(Node(node)); });
        case 11:
            return Expect([&] { return _model.GetShaderNode(model, node); },
                          [&] { return generator.GetShaderNode(Node(node)); });
        case 12:
        case 13: {
            const EdgeModel ends{node, Pick(ports), other, Pick(ports), false};
            return Expect(
                [&] { _model.Connect(model, ends); },
                [&] { generator.Connect(Node(node), ends.TailPort, Node(other), ends.HeadPort); });
        }
        case 14:
            return Record(model, generator, node);
        case 15:
            // The generator and the graph go, with all that nobody else keeps.
            if (!_choices.Flip())
                return;
            model = {};
            _graphs[which] = std::make_unique<RealGraph>();
            return;
        case 16:
            _model.Node(node).IsHeld = false;
            Node(node).reset();
            return;
        default:
            return StepWithEdge(model, graph, call, node, edge);
        }
    }

    void StepWithEdge(GraphModel& model, ShaderGraph& graph, std::size_t call, int node, int edge)
    {
        if (edge < 0)
            return;
        const std::size_t use = _choices.Below(8);
        if (call == 17 && use == 0)
            return Expect([&] { _model.AddOutEdge(node, edge); },
                          [&] { Node(node)->AddOutEdge(Edge(edge)); });
        if (call == 17 && use == 1)
            return Expect([&] { _model.AddInEdge(node, edge); },
                          [&] { Node(node)->AddInEdge(Edge(edge)); });
        if (call == 17) {
            _model.Edge(edge).IsHeld = false;
            Edge(edge).reset();
            return;
        }
        Expect([&] { _model.InsertEdge(model, edge); }, [&] { graph.InsertEdge(Edge(edge)); });
    }

    void MakeNode()
    {
        NodeModel model;
        model.Name = Pick(names);
        model.Type = Pick(types);
        switch (_choices.Below(6)) {
        case 0:
            model.Flags = Pick(flags);
            model.Inputs = {{"write", model.Type}};
            return Add(model,
                       ShaderNode::CreateInterfaceParameter(model.Name, model.Flags, model.Type));
        case 1:
            return Add(model, ShaderNode::CreateVaryingParameter(model.Name, model.Type));
        case 2:
            return Add(model, ShaderNode::CreateUniformParameter(model.Name, model.Type));
        case 3:
            model.Inputs = {{"write", model.Type}};
            return Add(model, ShaderNode::CreateInterpolantParameter(model.Type));
        default:
            model.Inputs = {{input, model.Type}};
            model.Outputs = {{output, Pick(types)}};
            ShaderFunctionBuilder builder;
            builder.AddInput(model.Inputs[0].Type, input);
            builder.AddOutput(model.Outputs[0].Type, output);
            Add(model, builder.Build(ShaderLevel::Automatic, model.Name));
        }
    }

    void Add(NodeModel& model, const ShaderNodeHandle& node)
    {
        model.Kind = node->Kind;
        if (model.Outputs.empty())
            model.Outputs = {{"read", model.Type}};
        _model.Nodes.push_back(model);
        _nodes.push_back(node);
        _weakNodes.emplace_back(node);
    }

    void MakeEdge(int tail, int head)
    {
        const std::string tailPort = Pick(ports);
        const std::string headPort = Pick(ports);
        _edges.push_back(
            boost::make_shared<ShaderEdge>(Node(tail), tailPort, Node(head), headPort, false));
        _weakEdges.emplace_back(_edges.back());
        _model.Edges.push_back({tail, tailPort, head, headPort, true});
    }

    void FindNode(GraphModel& model, ShaderGraph& graph)
    {
        const GraphModel::Key key(Pick(names), Pick(flags));
        const ShaderType& type = Pick(types);
        Claim(graph.HasInterfaceNode(key.first, key.second) == model.InterfaceNodes.contains(key),
              "the graph knows its own keys");
        Expect([&] { return _model.FindInterfaceNode(model, key); },
               [&] { return graph.FindInterfaceNode(key.first, key.second); });
        Expect([&] { return _model.GetInterfaceNode(model, key, type); },
               [&] { return graph.GetInterfaceNode(key.first, key.second, type); });
    }

    void Record(GraphModel& model, ShaderGraphGenerator& generator, int node)
    {
        const std::size_t edge = _choices.Below(std::size(_guiEdges));
        const std::string port = Pick(ports);
        const bool isTail = _choices.Flip();
        const auto recordModel = [&] {
            RecordModel& record = model.EdgeMap[static_cast<int>(edge)];
            if (isTail) {
                record.Tail = node;
                record.TailPort = port;
            } else {
                record.Heads.push_back(node);
                record.HeadPorts.push_back(port);
            }
        };
        Expect(recordModel, [&] {
            if (isTail)
                generator.RecordEdgeTail(_guiEdges[edge], Node(node), port);
            else
                generator.RecordEdgeHead(_guiEdges[edge], Node(node), port);
        });
    }

    /// The number of an object that the model has as alive, or -1.
    template <class Object>
    int NumberOf(const std::vector<boost::weak_ptr<Object>>& objects, const Object* wanted) const
    {
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (objects[i].lock().get() == wanted && wanted)
                return static_cast<int>(i);
        }
        return -1;
    }

    /// Whether both refer to one object, be it alive or not.
    template <class Object>
    static bool AreSame(const boost::weak_ptr<Object>& one, const boost::weak_ptr<Object>& other)
    {
        return !(one < other) && !(other < one);
    }

    void CompareAll()
    {
        for (std::size_t i = 0; i < _model.Graphs.size(); ++i) {
            Learn(_model.Graphs[i].Nodes, _graphs[i]->Graph.Nodes, _nodes, _weakNodes);
            Learn(_model.Graphs[i].Edges, _graphs[i]->Graph.Edges, _edges, _weakEdges);
        }
        for (std::size_t i = 0; i < _model.Nodes.size(); ++i)
            CompareNode(static_cast<int>(i));
        for (std::size_t i = 0; i < _model.Edges.size(); ++i)
            CompareEdge(static_cast<int>(i));
        for (std::size_t i = 0; i < _model.Graphs.size(); ++i) {
            CompareGraph(_model.Graphs[i], _graphs[i]->Graph);
            CompareGenerator(_model.Graphs[i], _graphs[i]->Generator);
        }
    }

    /// Meets the nodes or edges that a graph has made itself.
    template <class List, class Handle, class Object>
    static void Learn(const std::vector<int>& model, const List& list, std::vector<Handle>& held,
                      std::vector<boost::weak_ptr<Object>>& all)
    {
        Claim(list.size() == model.size(), "the graph has as many nodes and edges as it must");
        auto entry = list.begin();
        for (const int number : model) {
            if (static_cast<std::size_t>(number) == all.size()) {
                held.emplace_back();
                all.emplace_back(*entry);
            }
            ++entry;
        }
    }

    void CompareNode(int number)
    {
        const ShaderNodeHandle node = At(_weakNodes, number).lock();
        const NodeModel& model = _model.Node(number);
        Claim((node != nullptr) == _model.IsNodeAlive(number), "a node lives while it is kept");
        if (!node)
            return;
        ClaimEqual(node->Describe(), _model.Describe(number), "a node says what it is");
        Claim(node->Code == model.Code, "a function has its code");
        CompareList(model.OutEdges, node->OutEdges, _weakEdges);
        CompareList(model.InEdges, node->InEdges, _weakEdges);
    }

    void CompareEdge(int number)
    {
        const ShaderEdgeHandle edge = At(_weakEdges, number).lock();
        const EdgeModel& model = _model.Edge(number);
        Claim((edge != nullptr) == _model.IsEdgeAlive(number), "an edge lives while it is kept");
        Claim(!edge || (edge->TailPort == model.TailPort && edge->HeadPort == model.HeadPort &&
                        AreSame(edge->Tail, At(_weakNodes, model.Tail)) &&
                        AreSame(edge->Head, At(_weakNodes, model.Head)) && !edge->EdgeFlag),
              "an edge has its ends");
    }

    template <class List, class Object>
    static void CompareList(const std::vector<int>& model, const List& list,
                            std::vector<boost::weak_ptr<Object>>& all)
    {
        Claim(list.size() == model.size(), "a list is as long as it must be");
        auto entry = list.begin();
        for (const int number : model)
            Claim(AreSame<Object>(*entry++, At(all, number)), "a list has its order");
    }

    template <class List, class Set>
    static void CompareSet(const List& list, const Set& set)
    {
        Claim(set.size() == list.size() && set == Set(list.begin(), list.end()),
              "list and set agree");
    }

    void CompareGraph(const GraphModel& model, const ShaderGraph& graph)
    {
        CompareSet(graph.Nodes, graph.NodeSet);
        CompareSet(graph.Edges, graph.EdgeSet);
        CompareList(model.Nodes, graph.Nodes, _weakNodes);
        CompareList(model.Edges, graph.Edges, _weakEdges);
        Claim(graph.InterfaceNodes.size() == model.InterfaceNodes.size(),
              "the graph has its interface parameters");
        for (const auto& [key, number] : model.InterfaceNodes)
            Claim(graph.InterfaceNodes.at(key) == At(_weakNodes, number).lock(),
                  "the graph has its interface parameters");
    }

    void CompareGenerator(const GraphModel& model, const ShaderGraphGenerator& generator)
    {
        Claim(generator.NodeMap.size() == model.NodeMap.size(), "the generator has its nodes");
        for (const auto& [given, standing] : generator.NodeMap) {
            const auto entry = model.NodeMap.find(NumberOf(_weakNodes, given.get()));
            Claim(entry != model.NodeMap.end() &&
                      entry->second == NumberOf(_weakNodes, standing.get()),
                  "the generator has its nodes");
        }
        Claim(generator.EdgeMap.size() == model.EdgeMap.size(), "the generator has its records");
        for (const auto& [number, expected] : model.EdgeMap) {
            const auto& record = generator.EdgeMap.at(_guiEdges[static_cast<std::size_t>(number)]);
            std::vector<int> heads;
            for (const ShaderNodeHandle& head : record.Heads)
                heads.push_back(NumberOf(_weakNodes, head.get()));
            Claim(NumberOf(_weakNodes, record.Tail.get()) == expected.Tail &&
                      record.TailPort == expected.TailPort && heads == expected.Heads &&
                      record.HeadPorts == expected.HeadPorts,
                  "a record has both ends");
        }
    }

    Choices _choices;
    const CallMaker& _makeCall;
    WorldModel _model;
    std::vector<ShaderNodeHandle> _nodes; ///< empty where the program let go
    std::vector<ShaderEdgeHandle> _edges;
    std::vector<boost::weak_ptr<ShaderNode>> _weakNodes;
    std::vector<boost::weak_ptr<ShaderEdge>> _weakEdges;
    boost::shared_ptr<GuiEdge> _guiEdges[4];
    std::unique_ptr<RealGraph> _graphs[2];
};

} // namespace

void RunShaderSession(Choices choices, const CallMaker& makeCall)
{
    Session(choices, makeCall).Run();
}
