#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CrossingLayout.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/ShaderGeneration.h"

#include <boost/noncopyable.hpp>

#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

/// The part of the programs that a shader node belongs to.
enum class DrawnStage
{
    None, ///< only names a value, or the stages are unknown
    Vertex,
    Fragment,
    Both,
    Dead, ///< not read by any program
};

/// The stages of a complete shader graph, including its interface parameters and dead nodes.
class ShaderStages : private boost::noncopyable
{
public:
    /// @param shader must outlive this object
    /// @param problems if there is an error, the stages are unknown; receives further problems that
    ///        prevent the choice of stages
    ShaderStages(const GeneratedShader& shader, ProblemList& problems);

    bool IsKnown() const { return _layout.has_value(); }

    DrawnStage StageOf(const ShaderNode& node) const;

    /// Returns the register in which the edge's value reaches the fragment program; nothing if the
    /// value does not cross. The string is empty if the edge starts at an interface parameter, or
    /// if the registers could not be assigned.
    std::optional<std::string> CrossingOf(const ShaderEdge& edge) const;

private:
    using NodeSet = std::unordered_set<const ShaderNode*>;

    void CollectReadNames();
    std::optional<ProgramValue> ValueOf(const ShaderEdge& edge) const;

    std::optional<ProgramGraph> _program;
    std::optional<CrossingLayout> _layout;
    std::unordered_map<const ShaderNode*, std::size_t> _index; ///< index of each node in the
                                                               ///< program
    NodeSet _read;           ///< interface parameters that a function of the program reads
    NodeSet _readInFragment; ///< interface parameters that a fragment function reads
};

} // namespace Mox::Host
