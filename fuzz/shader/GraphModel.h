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

/// What an operation must answer: nothing, a failure, or a node.
struct Answer
{
    std::string Failure; ///< message; "bad_weak_ptr" for an edge that has gone; empty: none
    int Node = -1;
    bool IsProvided = false; ///< a node that a provider makes and nobody keeps
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

/// One graph and the generator that fills it.
struct GraphModel
{
    using Key = std::pair<std::string, std::int32_t>;

    std::vector<int> Nodes;
    std::vector<int> Edges;
    std::map<Key, int> InterfaceNodes;
    std::vector<std::string> Providers; ///< the name that each of them serves
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

    Answer AddOutEdge(int node, int edge) { return AddEntry(Node(node).OutEdges, edge, "out"); }
    Answer AddInEdge(int node, int edge) { return AddEntry(Node(node).InEdges, edge, "in"); }

    Answer InsertNode(GraphModel& graph, int node);
    Answer InsertEdge(GraphModel& graph, int edge);
    Answer ConnectPorts(GraphModel& graph, int tail, const std::string& tailPort, int head,
                        const std::string& headPort);
    Answer FindInterfaceNode(const GraphModel& graph, const GraphModel::Key& key) const;
    Answer GetInterfaceNode(const GraphModel& graph, const GraphModel::Key& key,
                            const ShaderType& expected) const;

    Answer AddNode(GraphModel& graph, int node);
    Answer GetShaderNode(const GraphModel& graph, int node) const;
    Answer Connect(GraphModel& graph, int tail, const std::string& tailPort, int head,
                   const std::string& headPort);

    std::vector<NodeModel> Nodes;
    std::vector<EdgeModel> Edges;
    std::vector<GraphModel> Graphs;

private:
    Answer AddEntry(std::vector<int>& list, int edge, const std::string& which) const;
    Answer CheckNewEntry(const std::vector<int>& list, int edge, const std::string& which) const;
    Answer CheckEdge(const GraphModel& graph, int edge) const;
    Answer Convert(GraphModel& graph, const EdgeModel& ends, const ShaderType& from,
                   const ShaderType& to);
};

/// The type of what providers give.
inline const ShaderType providedType(ComponentType::Float, 3, 1, 1);
