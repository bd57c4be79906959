#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/CgWriter.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"
#include "mox/program/ProgramStage.h"
#include "mox/program/ShaderGeneration.h"

#include <filesystem>

namespace Mox::Host {

/// Adds problems found in later stages to a list and completes their places: such problems have at
/// most the id of a node, and those of the whole material do not even have the file.
void AppendWithLines(const ProblemList& found, const MaterialGraph& graph, ProblemList& problems);

/// Completes the shader graph of a resolved material with the material's own nodes and those of the
/// environment.
/// @param shader must have an empty graph without providers
/// @param problems receives the problems found; if there is an error, the graph is incomplete
void CompleteShader(const MaterialGraph& graph, const Environment& environment,
                    GeneratedShader& shader, ProblemList& problems);

/// Plans the programs of a resolved material. Nodes that do not affect the surface are left out
/// with a warning. A material with no output node, or with more than one, also causes a warning.
/// @param copies does not change the image
/// @param problems receives the problems found; if there is an error, the result must not be used
ProgramPlan PlanMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                                StageCopies copies, ProblemList& problems);

/// Plans the Cg programs of a resolved material and writes them.
CgProgram BuildMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                               const ProgramOptions& options, ProblemList& problems);

/// Writes a material's program in a format.
/// @param problems receives an error for everything that the format cannot express, at the line of
///        the material's node
std::vector<ProgramFile> WriteProgram(const ProgramFormat& format, const CgProgram& program,
                                      const MaterialGraph& graph, const std::filesystem::path& file,
                                      ProblemList& problems);

} // namespace Mox::Host
