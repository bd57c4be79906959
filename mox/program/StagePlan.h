#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramGraph.h"

#include <set>
#include <string>
#include <vector>

namespace Mox::Host {

/// In which stages the nodes of a program run, and which values cross from the vertex to the
/// fragment stage.
///
/// A function with a level runs in that stage. One without a level runs in the stage that needs its
/// result, and never moves to the vertex stage unless a vertex function needs it: a result that is
/// computed for each vertex and then interpolated is another one. If both stages need it, each
/// computes it, but for mere copies, of which it is proved that they survive interpolation; a copy
/// is made in the vertex stage and handed on.
class StagePlan
{
public:
    /// Whether copies that both stages need are handed on. It saves work and may cost interpolants.
    enum class Copies
    {
        HandedOn,
        MadeTwice,
    };

    /// @param problems takes a function that must run per fragment and is needed per vertex, with
    /// the
    ///        path from the one to the other
    StagePlan(const ProgramGraph& graph, Copies copies, ProblemList& problems);

    bool InVertex(std::size_t node) const { return _inVertex[node]; }
    bool InFragment(std::size_t node) const { return _inFragment[node]; }

    /// The value behind interpolant parameters.
    ProgramValue SourceOf(ProgramValue value) const;

    /// Values that the fragment stage takes from the vertex stage.
    const std::set<ProgramValue>& Crossing() const { return _crossing; }

private:
    void NeedInVertex(const ProgramValue& value, std::size_t reader);
    void NeedInFragment(const ProgramValue& value);
    void ReportConflict(std::size_t node);
    std::string FormatPath(std::size_t node) const;
    const ShaderOrigin* EndBehind(std::size_t node) const;

    const ProgramGraph& _graph;
    ProblemList& _problems;
    std::vector<bool> _inVertex;
    std::vector<bool> _inFragment;
    std::vector<std::size_t> _vertexReader; ///< who needs a node per vertex
    std::vector<bool> _wanted; ///< by value number: the fragment stage reads it, of a node that may
                               ///< run there
    std::set<ProgramValue> _crossing;
};

} // namespace Mox::Host
