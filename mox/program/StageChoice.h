#pragma once

#include "mox/host/Problem.h"
#include "mox/program/FunctionBody.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/StageCopies.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// A set of components of a vector, one bit for each.
using ComponentMask = std::uint32_t;

/// In which stages the nodes of a program run, and which values cross from the vertex to the
/// fragment stage.
///
/// The picture is always the one of a program that computes everything for each pixel, from vertex
/// streams and results of the vertex stage that are interpolated to it. So a function with a level
/// runs in that stage, and one without in each stage that needs its result. A copy of interpolated
/// values may be handed on instead of being made again, since that makes no difference.
class StageChoice
{
public:
    /// @param graph is referred to and must live as long as the result
    /// @param problems takes a function of the fragment stage that the vertex stage needs, with the
    ///        path from the one to the other, and a value that has to cross and cannot
    StageChoice(const ProgramGraph& graph, StageCopies copies, ProblemList& problems);

    bool InVertex(std::size_t node) const { return _inVertex[node]; }
    bool InFragment(std::size_t node) const { return _inFragment[node]; }

    /// The value behind interpolant parameters.
    ProgramValue SourceOf(ProgramValue value) const;

    /// What the fragment stage takes from the vertex stage where it reads a value, or nothing if it
    /// computes the value itself or takes it from outside.
    std::optional<ProgramValue> CrossingOf(const ProgramValue& value) const;

    /// The values that the fragment stage takes from the vertex stage, with the components that it
    /// reads; if copies are handed on, all of them.
    const std::map<ProgramValue, ComponentMask>& Crossing() const { return _crossing; }

private:
    /// How a component of a value in the fragment stage relates to that in the vertex stage.
    enum class Rate
    {
        Constant,     ///< the same in both, for all vertices
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
    std::string FormatReasons(std::initializer_list<std::size_t> nodes) const;
    const ShaderOrigin* EndBehind(std::size_t node) const;

    const ProgramGraph& _graph;
    ProblemList& _problems;
    StageCopies _copies;
    std::map<const ShaderNode*, std::optional<CopiedComponents>> _definitions;
    std::vector<const CopiedComponents*> _copied; ///< by node; null unless it is a copy
    std::vector<std::vector<Rate>> _rates; ///< of the components of each value, by its number;
                                           ///< empty until they are needed
    std::vector<bool> _inVertex;
    std::vector<bool> _inFragment;
    std::vector<std::size_t> _vertexReader; ///< by node: which node needs it per vertex
    std::vector<ComponentMask> _read;       ///< by value number: what the fragment stage reads of
                                            ///< it
    std::map<ProgramValue, ComponentMask> _crossing;
    std::map<ProgramValue, std::size_t> _crossingReader; ///< a node that reads it
};

/// What people know a value by: the parameter's name, or node and port.
std::string DescribeValue(const ProgramGraph& graph, const ProgramValue& value);

} // namespace Mox::Host
