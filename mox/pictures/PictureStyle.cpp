#include "mox/pictures/PictureStyle.h"

#include "mox/Text.h"
#include "mox/pictures/DotText.h"

#include <string>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr float messageSize = 8;
constexpr std::size_t messageWidth = 38; ///< in characters per line
constexpr std::size_t maxMessageLength = 240;

} // namespace

std::string OpenDot()
{
    // The alternatives have nearly the same widths as the first font.
    constexpr const char* font = "fontname=\"DejaVu Sans,Verdana,sans-serif\"";
    return Compose("digraph material {\n"
                   "  graph [rankdir=LR, nodesep=0.3, ranksep=0.6, pad=0.2, bgcolor=white, ",
                   font,
                   ", fontsize=9]\n"
                   "  node [shape=plain, ",
                   font,
                   ", fontsize=9]\n"
                   "  edge [color=\"#606060\", penwidth=1.2, arrowsize=0.6, ",
                   font, ", fontsize=8]\n");
}

Colour LineColourOf(Severity level)
{
    return level == Severity::Error ? Colour{0.8f, 0.05f, 0.05f} : Colour{0.7f, 0.42f, 0};
}

Colour AreaColourOf(Severity level)
{
    return level == Severity::Error ? Colour{1, 0.85f, 0.85f} : Colour{1, 0.93f, 0.75f};
}

std::string FontText(float points, const Colour& colour, std::string_view markup)
{
    return Compose("<FONT POINT-SIZE=\"", points, "\" COLOR=\"", colour.Format(), "\">", markup,
                   "</FONT>");
}

std::string FormatProblemRow(const ProblemMark& mark)
{
    if (!mark.IsProblem)
        return {};
    return Compose("<TR><TD COLSPAN=\"3\" ALIGN=\"LEFT\" BALIGN=\"LEFT\" BGCOLOR=\"",
                   AreaColourOf(mark.Level).Format(), "\">",
                   FontText(messageSize, LineColourOf(mark.Level),
                            WrapLabel(Shorten(mark.Text, maxMessageLength), messageWidth)),
                   "</TD></TR>");
}

std::string FormatCaption(const std::vector<ProblemMark>& marks, const std::string& legendCells)
{
    constexpr std::size_t captionWidth = 90;
    std::string rows;
    if (!legendCells.empty()) {
        rows += Compose("<TR><TD ALIGN=\"LEFT\"><TABLE BORDER=\"0\" CELLSPACING=\"6\">", "<TR>",
                        legendCells, "</TR></TABLE></TD></TR>");
    }
    for (const ProblemMark& mark : marks) {
        rows += Compose(
            "<TR><TD ALIGN=\"LEFT\" BALIGN=\"LEFT\">",
            FontText(messageSize + 1, LineColourOf(mark.Level), WrapLabel(mark.Text, captionWidth)),
            "</TD></TR>");
    }
    return rows.empty()
               ? ""
               : Compose("  label=<<TABLE BORDER=\"0\">", rows, "</TABLE>>\n  labeljust=l\n");
}

} // namespace Mox::Host
