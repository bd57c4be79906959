#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/StageChoice.h"

#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Packs values into registers of four components, widest first; each value goes as a whole into
/// the first register with enough room. If they do not all fit that way, the remaining values are
/// split across the free components.
/// @param values the components of each value that are needed, at most four each
/// @param registers numbers of the free registers
/// @returns the pieces of each value; nothing if there are more components than free space
std::optional<std::vector<std::vector<CrossingPiece>>>
PackCrossing(const std::vector<ComponentMask>& values, std::span<const std::int32_t> registers);

/// The letters of a range of components, such as "yz".
/// @param first, width must lie within four components
std::string_view LettersOf(std::int32_t first, std::int32_t width);

/// Assigns the nodes of a program to stages, and the values that cross between the stages to
/// registers.
///
/// The first attempt computes copies that both stages need only in the vertex stage, and passes all
/// their components on. If there are too few registers for this, the fragment stage repeats the
/// copies, and only the components that it reads cross. So a layout is found whenever one exists.
class CrossingLayout
{
public:
    /// @param graph must outlive this object
    /// @param problems must outlive this object; receives the problems that StageChoice reports,
    ///        and an error if the values do not fit into the registers
    CrossingLayout(const ProgramGraph& graph, StageCopies copies, ProblemList& problems);

    const StageChoice& Stages() const { return *_stages; }

    /// The registers of each crossing value; empty if there are problems.
    const std::map<ProgramValue, std::vector<CrossingPiece>>& Pieces() const { return _pieces; }

private:
    bool TryCopies(StageCopies copies, ProblemList& problems);
    bool LayOut();

    const ProgramGraph& _graph;
    std::vector<std::int32_t> _registers; ///< numbers of the free registers
    std::optional<StageChoice> _stages;
    std::map<ProgramValue, std::vector<CrossingPiece>> _pieces;
};

} // namespace Mox::Host
