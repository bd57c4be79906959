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

/// How a shader node takes part in the programs.
enum class DrawnStage
{
    None, ///< is only a name for a value, or the stages are not known
    Vertex,
    Fragment,
    Both,
    Dead, ///< nothing in the programs reads it
};

/// The stages of a whole shader graph, with its interface parameters and dead nodes.
class ShaderStages : private boost::noncopyable
{
public:
    /// @param shader is referred to and must live as long as the result
    /// @param problems with an error among them the stages are not known; takes what else stands in
    ///        their way
    ShaderStages(const GeneratedShader& shader, ProblemList& problems);

    bool IsKnown() const { return _layout.has_value(); }

    DrawnStage StageOf(const ShaderNode& node) const;

    /// The register in which the edge's value comes to the fragment program, or nothing if the
    /// value does not cross. The text is empty if the edge starts at a mere name of the value, or
    /// if something stands in the way of the registers.
    std::optional<std::string> CrossingOf(const ShaderEdge& edge) const;

private:
    using NodeSet = std::unordered_set<const ShaderNode*>;

    void CollectReadNames();
    std::optional<ProgramValue> ValueOf(const ShaderEdge& edge) const;

    std::optional<ProgramGraph> _program;
    std::optional<CrossingLayout> _layout;
    std::unordered_map<const ShaderNode*, std::size_t> _index; ///< in the program
    NodeSet _read;           ///< interface parameters that a function of the program reads
    NodeSet _readInFragment; ///< interface parameters that one of the fragment stage reads
};

} // namespace Mox::Host
