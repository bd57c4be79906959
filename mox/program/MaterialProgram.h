#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/CgWriter.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/StageCopies.h"

#include <filesystem>

namespace Mox::Host {

/// Takes over what was found behind the authoring graph, where only the ids of nodes are known, and
/// of problems of the whole material not even the file.
void AppendWithLines(const ProblemList& found, const MaterialGraph& graph, ProblemList& problems);

/// The complete shader graph of a resolved material: its own nodes and those of the environment.
/// @param shader has an empty graph without providers
/// @param problems takes all that went wrong; with an error among them the graph is not complete
void CompleteShader(const MaterialGraph& graph, const Environment& environment,
                    GeneratedShader& shader, ProblemList& problems);

/// The plan of a resolved material's programs. Nodes that do not affect the surface are left out
/// with a warning. A material without an output node, or with more than one, is a warning too.
/// @param copies does not change the image
/// @param problems receives what is wrong; if there is an error among it, do not use the result
ProgramPlan PlanMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                                StageCopies copies, ProblemList& problems);

/// The Cg programs of a resolved material, written from that plan.
CgProgram BuildMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                               const ProgramOptions& options, ProblemList& problems);

/// The texts of a material's program in a format.
/// @param problems takes what the format has against it, at the lines of the material's nodes
std::vector<std::string> WriteProgram(const ProgramFormat& format, const CgProgram& program,
                                      const MaterialGraph& graph, const std::filesystem::path& file,
                                      ProblemList& problems);

} // namespace Mox::Host
