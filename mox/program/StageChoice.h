#pragma once

#include "mox/host/Problem.h"
#include "mox/program/FunctionBody.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/ProgramStage.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// A set of components of a vector, one bit for each.
using ComponentMask = std::uint32_t;

/// Chooses the stages that the nodes of a program run in, and finds the values that cross from the
/// vertex to the fragment stage.
///
/// The image always equals that of a program that computes everything per pixel from interpolated
/// vertex streams and interpolated results of the vertex stage. So a function with a level runs in
/// that stage, and a function without one runs in each stage that needs its result. Copies of
/// interpolated values may be passed on instead of being repeated, since that makes no difference.
class StageChoice
{
public:
    /// @param graph must outlive this object
    /// @param problems receives an error for each function of the fragment stage that the vertex
    ///        stage needs, with the path between the two, and for each value that would have to
    ///        cross but cannot
    StageChoice(const ProgramGraph& graph, StageCopies copies, ProblemList& problems);

    bool InVertex(std::size_t node) const { return _inVertex[node]; }
    bool InFragment(std::size_t node) const { return _inFragment[node]; }

    /// Follows interpolant parameters to the value that they interpolate.
    ProgramValue SourceOf(ProgramValue value) const;

    /// Returns the vertex stage value that the fragment stage reads in place of a value, or nothing
    /// if it computes the value itself or reads it from outside.
    std::optional<ProgramValue> CrossingOf(const ProgramValue& value) const;

    /// The values that cross to the fragment stage, with the components that it reads; all
    /// components if copies are handed on.
    const std::map<ProgramValue, ComponentMask>& Crossing() const { return _crossing; }

private:
    /// How the value of a component in the fragment stage relates to that in the vertex stage.
    enum class Rate
    {
        Constant,     ///< the same in both stages, for all vertices
        Interpolated, ///< interpolated between the vertices
        PerPixel,     ///< anything else
    };

    void FindRates();
    void FindRatesOf(std::size_t node);
    bool CanHandOn(std::size_t node);
    void HandOn(std::size_t node);
    void ReadInputs(std::size_t node);
    std::vector<ComponentMask> FindReadComponents(std::size_t node) const;
    void NeedInVertex(const ProgramValue& value, std::size_t reader);
    void NeedInFragment(const ProgramValue& value, ComponentMask components, std::size_t reader);
    void Cross(const ProgramValue& value, ComponentMask components, std::size_t reader);
    void ReportConflict(std::size_t node);
    void ReportWhatCannotCross();
    std::string FormatPath(std::size_t node) const;
    std::string FormatRemedy(std::size_t toVertex, std::size_t toFragment) const;
    const ShaderOrigin* EndBehind(std::size_t node) const;

    const ProgramGraph& _graph;
    ProblemList& _problems;
    StageCopies _copies;
    std::map<const ShaderNode*, std::optional<CopiedComponents>> _definitions;
    std::vector<const CopiedComponents*> _copied; ///< by node; null if the node is not a copy
    std::vector<std::vector<Rate>> _rates; ///< of the components of each value, by its number;
                                           ///< empty until needed
    std::vector<bool> _inVertex;
    std::vector<bool> _inFragment;
    std::vector<std::size_t> _vertexReader; ///< by node: the node that needs it per vertex
    std::vector<ComponentMask> _read;       ///< by value number: the components that the fragment
                                            ///< stage reads
    std::map<ProgramValue, ComponentMask> _crossing;
    std::map<ProgramValue, std::size_t> _crossingReader; ///< one of the nodes that read it
};

/// A readable name of a value: that of the parameter, or node and port.
std::string DescribeValue(const ProgramGraph& graph, const ProgramValue& value);

} // namespace Mox::Host
