#pragma once

#include "mox/host/Problem.h"
#include "mox/pictures/Graphviz.h"
#include "mox/program/ShaderGeneration.h"

namespace Mox::Host {

/// Draws a shader graph with the stages in which its nodes run: functions as boxes under the id of
/// the node that they come from, parameters as ellipses, conversions as small boxes. Values that
/// cross from the vertex to the fragment program are bold lines with their registers; what nothing
/// in the program reads is grey.
///
/// A graph with errors, which is not complete, is drawn without stages.
/// @param problems what is red in the picture, as in DrawMaterial; takes what stands in the way of
///        the stages
Drawing DrawShader(const GeneratedShader& shader, ProblemList& problems);

} // namespace Mox::Host
