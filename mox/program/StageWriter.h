#pragma once

#include "mox/program/CgNames.h"
#include "mox/program/CgProgramBuilder.h"
#include "mox/program/FunctionTable.h"
#include "mox/program/ParameterTable.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/StagePlan.h"

#include <map>
#include <string>
#include <vector>

namespace Mox::Host {

/// What both stages are written from.
struct ProgramParts
{
    const ProgramGraph& Graph;
    const StagePlan& Plan;
    const ParameterTable& Parameters;
    const FunctionTable& Functions;
    const Environment& Surroundings;
    const CgNames& Names;
    const std::map<ProgramValue, ProgramInterpolant>& Interpolants;
    const ProgramOptions& Options;
};

enum class Stage
{
    Vertex,
    Fragment,
};

/// The text of one stage: parameters, functions, and the entry point that calls them.
StageProgram WriteStage(const ProgramParts& parts, Stage stage);

} // namespace Mox::Host
