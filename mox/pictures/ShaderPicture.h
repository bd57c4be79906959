#pragma once

#include "mox/host/Problem.h"
#include "mox/pictures/Graphviz.h"
#include "mox/program/ShaderGeneration.h"

namespace Mox::Host {

/// Draws a shader graph and the stages of its nodes: functions are boxes below the id of the node
/// that they come from, parameters are ellipses, conversions are small boxes. Values that cross
/// from the vertex to the fragment program are bold lines labelled with their registers; nodes that
/// the program does not read are grey.
///
/// An incomplete graph with errors is drawn without stages.
/// @param problems shown as in DrawMaterial; receives those that prevent the choice of stages
Drawing DrawShader(const GeneratedShader& shader, ProblemList& problems);

} // namespace Mox::Host
