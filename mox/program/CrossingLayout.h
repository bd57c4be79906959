#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/StageChoice.h"

#include <map>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Packs values into registers of four components: the widest first, each whole into the first
/// register with room. If they do not all fit, those that find no room are split over what is left.
/// @param values the components of each value that are needed, at most four each
/// @param registers numbers of the registers that are free
/// @returns the pieces of each value, or nothing if there are more components than room
std::optional<std::vector<std::vector<CrossingPiece>>>
PackCrossing(const std::vector<ComponentMask>& values, std::span<const std::int32_t> registers);

/// The letters of components, such as "yz".
/// @param first, width within four
std::string_view LettersOf(std::int32_t first, std::int32_t width);

/// The stages of a program with the registers through which values cross between them.
///
/// Copies that both stages need are handed on whole. If that does not fit, the fragment stage makes
/// them again, and no more crosses than the components that it reads. So whatever fits in any way
/// is found.
class CrossingLayout
{
public:
    /// @param graph is referred to and must live as long as the result
    /// @param problems is referred to likewise; takes what StageChoice reports, and values that do
    ///        not fit into the registers
    CrossingLayout(const ProgramGraph& graph, StageCopies copies, ProblemList& problems);

    const StageChoice& Stages() const { return *_stages; }

    /// Where each crossing value lies; empty if there are problems.
    const std::map<ProgramValue, std::vector<CrossingPiece>>& Pieces() const { return _pieces; }

private:
    bool TryCopies(StageCopies copies, ProblemList& problems);
    bool LayOut();

    const ProgramGraph& _graph;
    std::vector<std::int32_t> _registers; ///< that are free
    std::optional<StageChoice> _stages;
    std::map<ProgramValue, std::vector<CrossingPiece>> _pieces;
};

} // namespace Mox::Host
