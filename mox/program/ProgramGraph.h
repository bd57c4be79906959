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

/// The value of one output port of a node of the program.
struct ProgramValue
{
    std::size_t Node; ///< index into ProgramGraph::Nodes
    std::size_t Port; ///< index into the outputs of the shader node

    // NOLINTNEXTLINE(modernize-use-nullptr): mistakes the 0 of a defaulted comparison for a pointer
    friend auto operator<=>(const ProgramValue& a, const ProgramValue& b) = default;
};

/// A node of the program.
struct ProgramNode
{
    const ShaderNode* Shader;
    const ShaderNode* Definition; ///< the first function equal in name, ports and body, though its
                                  ///< level may differ; for other nodes, Shader itself
    const ShaderOrigin* Origin;
    ShaderLevel Level;                ///< the stage that it must run in, or Automatic
    std::vector<ProgramValue> Inputs; ///< the source of each input port
};

/// The part of a shader graph that contributes to an output of the program, as plain indices.
///
/// Interface parameters are left out: their readers refer directly to the value written to them.
/// Each node comes after all that it reads, and close to where it is read.
class ProgramGraph
{
public:
    /// @param graph must outlive this object
    /// @param origins must outlive this object
    /// @param problems receives an error for each input with no source or more than one, and for
    ///        cycles
    ProgramGraph(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems);

    const std::vector<ProgramNode>& Nodes() const { return _nodes; }

    /// Ids of the authoring nodes that have no shader node in the program, in graph order.
    const std::vector<std::string>& DeadNodes() const { return _deadNodes; }

    const ShaderPort& PortOf(const ProgramValue& value) const
    {
        return _nodes[value.Node].Definition->Outputs[value.Port];
    }

    /// A number for each value, from 0 to ValueCount() - 1, in the order of values.
    std::size_t NumberOf(const ProgramValue& value) const
    {
        return _firstNumbers[value.Node] + value.Port;
    }

    std::size_t ValueCount() const { return _firstNumbers.back(); }

    /// The output node's input through which a node's input receives its value; null if there is
    /// none.
    const ShaderOrigin* EndBefore(std::size_t node, std::size_t input) const;

    /// A readable name of a value: that of the interface parameter or output that it is written to,
    /// or else its port name without the direction.
    std::string NameOf(const ProgramValue& value) const;

private:
    std::vector<ProgramNode> _nodes;
    std::vector<std::size_t> _firstNumbers; ///< of each node's values, followed by the total
    std::vector<std::string> _deadNodes;
    std::map<ProgramValue, std::string> _writtenInto;
    std::map<std::pair<std::size_t, std::size_t>, const ShaderOrigin*> _ends; ///< by node and input
};

bool IsSampler(const ShaderType& type);

/// Whether a node is a uniform or a vertex attribute of the program.
bool IsParameter(const ShaderNode& node);

/// The name of a parameter as the author of a material knows it.
const std::string& NameOf(const ProgramNode& parameter);

/// The place of the authoring node that a shader node comes from.
Place PlaceOf(const ShaderOrigin& origin);

} // namespace Mox::Host
