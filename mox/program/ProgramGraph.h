#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Host {

/// What one output port of a program's node gives.
struct ProgramValue
{
    std::size_t Node; ///< index into ProgramGraph::Nodes
    std::size_t Port; ///< index into the outputs of the shader node

    // NOLINTNEXTLINE(modernize-use-nullptr): takes the 0 of a defaulted comparison for a pointer
    friend auto operator<=>(const ProgramValue& a, const ProgramValue& b) = default;
};

/// A node of the program.
struct ProgramNode
{
    const ShaderNode* Shader;
    const ShaderNode* Definition; ///< one of the functions that are equal in name, ports and body,
                                  ///< but perhaps not in level; of any other node itself
    const ShaderOrigin* Origin;
    ShaderLevel Level;                ///< the stage in which it must run, or Automatic
    std::vector<ProgramValue> Inputs; ///< what feeds each input port
};

/// The part of a shader graph that reaches an output of the program, as plain indices.
///
/// Interface parameters are left out: who reads one reads what was written into it. Nodes stand in
/// an order in which each comes behind all that it reads, and close to where it is read.
class ProgramGraph
{
public:
    /// @param graph is referred to and must live as long as the result
    /// @param origins likewise
    /// @param problems takes an input that is fed twice or not at all, and a circle
    ProgramGraph(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems);

    const std::vector<ProgramNode>& Nodes() const { return _nodes; }

    /// Ids of the authoring nodes of whose shader nodes none is in the program, in graph order.
    const std::vector<std::string>& DeadNodes() const { return _deadNodes; }

    const ShaderPort& PortOf(const ProgramValue& value) const
    {
        return _nodes[value.Node].Definition->Outputs[value.Port];
    }

    /// A number for each value, from 0 to ValueCount() - 1, in the order of the values.
    std::size_t NumberOf(const ProgramValue& value) const
    {
        return _firstNumbers[value.Node] + value.Port;
    }

    std::size_t ValueCount() const { return _firstNumbers.back(); }

    /// The port of the material at which a node's input takes what it reads; null if there is none.
    const ShaderOrigin* EndBefore(std::size_t node, std::size_t input) const;

    /// What people know a value by: the interface parameter or output that it is written into, or
    /// else its port without the direction.
    std::string NameOf(const ProgramValue& value) const;

private:
    std::vector<ProgramNode> _nodes;
    std::vector<std::size_t> _firstNumbers; ///< of each node's values, and one more for the end
    std::vector<std::string> _deadNodes;
    std::map<ProgramValue, std::string> _writtenInto;
    std::map<std::pair<std::size_t, std::size_t>, const ShaderOrigin*> _ends; ///< by node and input
};

bool IsSampler(const ShaderType& type);

/// What the author of a material calls a parameter.
const std::string& NameOf(const ProgramNode& parameter);

/// The place of the authoring node behind a shader node.
Place PlaceOf(const ShaderOrigin& origin);

} // namespace Mox::Host
