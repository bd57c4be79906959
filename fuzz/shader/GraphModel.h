#pragma once

#include "mox/shader/ShaderNode.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A plain account of what shader graphs, their nodes and their generators must hold and answer.
/// It knows nodes and edges by numbers and takes every decision anew from lists of these.

/// What it must refuse it refuses with the very exception, before any change.

/// The node that an operation must give.
struct Found
{
    int Node = -1;
    std::optional<ShaderType> Provided; ///< of a node that a provider makes and nobody keeps
};

struct NodeModel
{
    ShaderNodeKind Kind = ShaderNodeKind::Function;
    std::string Name;
    std::int32_t Flags = 0;
    ShaderType Type = ShaderType(ComponentType::Float, 1, 1, 1); ///< of a parameter
    std::vector<ShaderPort> Inputs;
    std::vector<ShaderPort> Outputs;
    std::string Code;
    std::vector<int> InEdges;
    std::vector<int> OutEdges;
    bool IsHeld = true; ///< by the program itself
};

struct EdgeModel
{
    int Tail;
    std::string TailPort;
    int Head;
    std::string HeadPort;
    bool IsHeld = true;
};

struct RecordModel
{
    int Tail = -1;
    std::string TailPort;
    std::vector<int> Heads;
    std::vector<std::string> HeadPorts;
};

struct ProviderModel
{
    std::string Name; ///< of the parameters that it makes
    ShaderType Type;
    int Asked = 0; ///< how often
};

/// One graph and the generator that fills it.
struct GraphModel
{
    using Key = std::pair<std::string, std::int32_t>;

    std::vector<int> Nodes;
    std::vector<int> Edges;
    std::map<Key, int> InterfaceNodes;
    std::vector<ProviderModel> Providers;
    std::map<int, int> NodeMap;
    std::map<int, RecordModel> EdgeMap; ///< by number of the authoring edge
};

/// Several graphs over one set of nodes and edges.
class WorldModel
{
public:
    WorldModel() : Graphs(2) {}

    std::string Describe(int node) const;

    /// Whether somebody still keeps a node or an edge: the program, a graph or a generator.
    bool IsNodeAlive(int node) const;
    bool IsEdgeAlive(int edge) const;

    NodeModel& Node(int number) { return Nodes[static_cast<std::size_t>(number)]; }
    const NodeModel& Node(int number) const { return Nodes[static_cast<std::size_t>(number)]; }
    EdgeModel& Edge(int number) { return Edges[static_cast<std::size_t>(number)]; }
    const EdgeModel& Edge(int number) const { return Edges[static_cast<std::size_t>(number)]; }

    void AddOutEdge(int node, int edge) { AddEntry(Node(node).OutEdges, edge, "out"); }
    void AddInEdge(int node, int edge) { AddEntry(Node(node).InEdges, edge, "in"); }

    void InsertNode(GraphModel& graph, int node);
    void InsertEdge(GraphModel& graph, int edge);
    void ConnectPorts(GraphModel& graph, const EdgeModel& edge);
    Found FindInterfaceNode(GraphModel& graph, const GraphModel::Key& key) const;
    Found GetInterfaceNode(GraphModel& graph, const GraphModel::Key& key,
                           const ShaderType& expected) const;

    void AddNode(GraphModel& graph, int node);
    Found GetShaderNode(const GraphModel& graph, int node) const;
    void Connect(GraphModel& graph, const EdgeModel& ends);

    std::vector<NodeModel> Nodes;
    std::vector<EdgeModel> Edges;
    std::vector<GraphModel> Graphs;

private:
    void AddEntry(std::vector<int>& list, int edge, const std::string& which) const;
    void CheckNewEntry(const std::vector<int>& list, int number, const std::string& which) const;
    void CheckEdge(const GraphModel& graph, const EdgeModel& edge, int number) const;
    void LayEdge(GraphModel& graph, int number);

    /// @param which "input" or "output"
    ShaderType TypeOfPort(int node, const std::string& port, const std::string& which) const;
    void Convert(GraphModel& graph, const EdgeModel& ends, const ShaderType& from,
                 const ShaderType& to);
};
