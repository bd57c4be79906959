#pragma once

#include "mox/host/Problem.h"
#include "mox/layout/NodeShape.h"
#include "mox/pictures/Colour.h"
#include "mox/pictures/ProblemMarks.h"

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Styles shared by all diagrams.

/// Opens a graph that is laid out from left to right, with the common fonts and line styles.
std::string OpenDot();

/// The colours of items with an error or a warning: for lines and text, and for areas.
Colour LineColourOf(Severity level);
Colour AreaColourOf(Severity level);

/// Formats label text in a different size and colour.
/// @param markup label text that is already escaped
std::string FontText(float points, const Colour& colour, std::string_view markup);

/// Formats the messages of a node as a row of its table; empty if there are none.
std::string FormatProblemRow(const ProblemMark& mark);

/// Formats the attributes of the caption below the graph: a legend, and the messages that belong to
/// no node in the diagram, each in its colour. Empty if there are none.
/// @param legendCells cells of a table
std::string FormatCaption(const std::vector<ProblemMark>& marks,
                          const std::string& legendCells = {});

} // namespace Mox::Host
