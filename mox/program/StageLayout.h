#pragma once

#include "mox/host/Problem.h"
#include "mox/program/InterpolantPacking.h"
#include "mox/program/StagePlan.h"

#include <map>
#include <optional>

namespace Mox::Host {

/// The stages of a program with the registers through which values cross between them. Copies that
/// both stages need are handed on if there is room for them, and else made twice.
class StageLayout
{
public:
    /// @param graph, origins, problems are referred to and must live as long as the result
    /// @param problems takes what cannot be had where it is needed, and values that do not fit into
    ///        the registers or cannot be interpolated
    StageLayout(const ProgramGraph& graph, ProblemList& problems);

    const StagePlan& Plan() const { return *_plan; }

    /// Where each crossing value stands; empty if there are problems.
    const std::map<ProgramValue, InterpolantSlot>& Slots() const { return _slots; }

private:
    bool LayOut(const ProgramGraph& graph);

    std::optional<StagePlan> _plan;
    std::map<ProgramValue, InterpolantSlot> _slots;
};

} // namespace Mox::Host
