#pragma once

#include "mox/host/Problem.h"
#include "mox/layout/NodeShape.h"
#include "mox/pictures/Colour.h"
#include "mox/pictures/ProblemMarks.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// What all pictures share.

/// Opens a graph that grows from left to right, with the fonts and lines of all pictures.
std::string OpenDot();

/// Colour of what an error or a warning belongs to: of lines and text, and of areas.
Colour LineColourOf(Severity level);
Colour AreaColourOf(Severity level);

/// Label text in a font of its own.
/// @param markup is label text already
std::string FontText(float points, const Colour& colour, std::string_view markup);

/// The messages of a node as a row of its table, or nothing if there are none.
std::string FormatProblemRow(const ProblemMark& mark);

/// What stands below the graph, as its attributes: a legend and the messages of what has no node in
/// the picture, each in its colour; nothing if there are none.
/// @param legendCells cells of a table
std::string FormatCaption(const std::vector<ProblemMark>& marks,
                          const std::string& legendCells = {});

} // namespace Mox::Host
