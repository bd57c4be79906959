#include "mox/pictures/ShaderPicture.h"

#include "mox/Text.h"
#include "mox/pictures/DotText.h"
#include "mox/pictures/PictureStyle.h"
#include "mox/pictures/ShaderStages.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr float titleSize = 10;
constexpr float portSize = 9;
constexpr float smallSize = 8;
constexpr Colour black{0, 0, 0};
constexpr Colour grey{0.5f, 0.5f, 0.5f};

struct StageStyle
{
    DrawnStage Stage;
    const char* Name; ///< shown in the legend
    Colour Area;
    Colour Line;
};

constexpr std::array stageStyles{
    StageStyle{DrawnStage::Vertex, "vertex program", {0.82f, 0.9f, 0.98f}, {0.2f, 0.4f, 0.65f}},
    StageStyle{DrawnStage::Fragment, "fragment program", {1, 0.9f, 0.76f}, {0.7f, 0.45f, 0.1f}},
    StageStyle{DrawnStage::Both, "both programs", {0.88f, 0.84f, 0.96f}, {0.45f, 0.3f, 0.7f}},
    StageStyle{DrawnStage::Dead, "not in a program", {0.93f, 0.93f, 0.93f}, {0.65f, 0.65f, 0.65f}},
    StageStyle{DrawnStage::None, "", {1, 1, 1}, {0.4f, 0.4f, 0.4f}},
};

const StageStyle& StyleOf(DrawnStage stage)
{
    return *std::find_if(stageStyles.begin(), stageStyles.end(),
                         [&](const StageStyle& style) { return style.Stage == stage; });
}

/// Formats a type; a question mark if it is invalid.
std::string FormatType(const ShaderType& type)
{
    try {
        return type.Format();
    } catch (const ShaderError&) {
        return "?";
    }
}

class ShaderDrawing
{
public:
    ShaderDrawing(const GeneratedShader& shader, const ShaderStages& stages,
                  const ProblemMarks& marks)
        : _shader(shader), _stages(stages), _marks(marks)
    {
        for (const ShaderNodeHandle& node : shader.Graph.Nodes)
            _names.emplace(node.get(), Compose("s", _names.size() + 1));
    }

    Drawing Draw() const
    {
        std::unordered_set<std::string> origins;
        for (const ShaderNodeHandle& node : _shader.Graph.Nodes)
            origins.insert(_shader.Origins.Of(*node).Node);
        origins.erase(""); // the environment is not a node
        std::string dot = OpenDot() + FormatCaption(_marks.Elsewhere(origins), FormatLegend());
        for (const ShaderNodeHandle& node : _shader.Graph.Nodes)
            dot += DrawNode(*node);
        for (const ShaderEdgeHandle& edge : _shader.Graph.Edges)
            dot += DrawEdge(*edge);
        return {dot + "}\n", {}};
    }

private:
    bool IsConversion(const ShaderNode& node) const
    {
        return _shader.Origins.Of(node).Type == "conversion" && node.Inputs.size() == 1 &&
               node.Outputs.size() == 1;
    }

    std::string DrawNode(const ShaderNode& node) const
    {
        const StageStyle& style = StyleOf(_stages.StageOf(node));
        const ProblemMark mark = MarkOf(node);
        const Colour line = mark.IsProblem ? LineColourOf(mark.Level) : style.Line;
        const Colour text = style.Stage == DrawnStage::Dead ? grey : black;
        std::string attributes;
        if (node.Kind != ShaderNodeKind::Function)
            attributes = FormatParameter(node, style, line, text);
        else if (IsConversion(node))
            attributes = FormatConversion(node, style, line, text);
        else
            attributes = FormatFunction(node, style, line, text, mark);
        return Compose("  ", _names.at(&node), " [", attributes,
                       ", tooltip=", QuoteTooltip(TooltipOf(node, mark)), "]\n");
    }

    /// Returns the mark of a node. Nodes of the environment have no mark, even if there are
    /// problems that name no node.
    ProblemMark MarkOf(const ShaderNode& node) const
    {
        const std::string& origin = _shader.Origins.Of(node).Node;
        return origin.empty() ? ProblemMark() : _marks.OfNode(origin);
    }

    std::string FormatParameter(const ShaderNode& node, const StageStyle& style, const Colour& line,
                                const Colour& text) const
    {
        const std::string& original = _shader.Origins.Of(node).Name;
        const std::string& name = original.empty() ? node.Name : original;
        std::string type = FormatType(node.Type);
        if (node.Register.Type != ShaderRegisterType::RegisterUnknown)
            type += " : " + node.Register.FormatRegister();
        const bool isOutput = node.Outputs.empty();
        return Compose("shape=ellipse, style=\"", LineStyleOf(node), "\", margin=\"0.06,0.03\", ",
                       "peripheries=", isOutput ? 2 : 1, ", color=\"", line.Format(),
                       "\", fillcolor=\"", style.Area.Format(), "\", label=<",
                       name.empty()
                           ? ""
                           : FontText(titleSize, text, EscapeLabel(Shorten(name, maxNameLength))) +
                                 "<BR/>",
                       FontText(smallSize, MutedOn(style, text), EscapeLabel(type)), ">");
    }

    /// Interface parameters are dashed, since they are not values of the program themselves.
    static std::string LineStyleOf(const ShaderNode& node)
    {
        return node.Kind == ShaderNodeKind::InterfaceParameter ? "filled,dashed" : "filled";
    }

    std::string FormatConversion(const ShaderNode& node, const StageStyle& style,
                                 const Colour& line, const Colour& text) const
    {
        return Compose("shape=box, style=\"filled,rounded\", margin=\"0.04,0.02\", height=0.1, ",
                       "width=0.1, color=\"", line.Format(), "\", fillcolor=\"",
                       style.Area.Format(), "\", label=<",
                       FontText(smallSize - 1, text,
                                EscapeLabel(Compose(FormatType(node.Inputs.front().Type), " → ",
                                                    FormatType(node.Outputs.front().Type)))),
                       ">");
    }

    std::string FormatFunction(const ShaderNode& node, const StageStyle& style, const Colour& line,
                               const Colour& text, const ProblemMark& mark) const
    {
        const std::string& origin = _shader.Origins.Of(node).Node;
        std::string table = Compose(
            "<TABLE BORDER=\"", mark.IsProblem ? 3 : 1, "\" CELLBORDER=\"0\" CELLSPACING=\"0\" ",
            "CELLPADDING=\"3\" STYLE=\"ROUNDED\" COLOR=\"", line.Format(), "\" BGCOLOR=\"",
            style.Area.Format(), "\"><TR><TD COLSPAN=\"3\">",
            FontText(titleSize, text,
                     Compose("<B>", EscapeLabel(Shorten(node.Name, maxNameLength)), "</B>")),
            "<BR/>",
            FontText(smallSize, MutedOn(style, text),
                     origin.empty() ? "<I>environment</I>"
                                    : EscapeLabel(Shorten(origin, maxNameLength))),
            "</TD></TR><HR/>");
        const std::size_t rows = std::max(node.Inputs.size(), node.Outputs.size());
        for (std::size_t i = 0; i < rows; ++i) {
            table += Compose("<TR>", FormatPort(node.Inputs, i, 'i', style, text), "<TD></TD>",
                             FormatPort(node.Outputs, i, 'o', style, text), "</TR>");
        }
        return Compose("label=<", table, FormatProblemRow(mark), "</TABLE>>");
    }

    static std::string FormatPort(const std::vector<ShaderPort>& ports, std::size_t index,
                                  char side, const StageStyle& style, const Colour& text)
    {
        if (index >= ports.size())
            return "<TD></TD>";
        const std::string name =
            FontText(portSize, text, EscapeLabel(Shorten(ports[index].Name, maxNameLength)));
        const std::string type =
            FontText(smallSize, MutedOn(style, text), FormatType(ports[index].Type));
        const bool isInput = side == 'i';
        return Compose("<TD PORT=\"", std::string(1, side), index, "\" ALIGN=\"",
                       isInput ? "LEFT" : "RIGHT", "\">", isInput ? name : type, " ",
                       isInput ? type : name, "</TD>");
    }

    static Colour MutedOn(const StageStyle& style, const Colour& text)
    {
        constexpr float share = 0.35f;
        return Mix(text, style.Area, share);
    }

    std::string TooltipOf(const ShaderNode& node, const ProblemMark& mark) const
    {
        std::string tooltip;
        try {
            tooltip = node.Describe();
        } catch (const ShaderError&) {
            tooltip = node.Name;
        }
        if (!node.Code.empty())
            tooltip += "\n" + node.Code;
        return mark.IsProblem ? tooltip + "\n" + mark.Text : tooltip;
    }

    std::string DrawEdge(const ShaderEdge& edge) const
    {
        const ShaderNodeHandle tail = edge.Tail.lock();
        const ShaderNodeHandle head = edge.Head.lock();
        if (!tail || !head)
            return {};
        const bool isDead = _stages.StageOf(*tail) == DrawnStage::Dead ||
                            _stages.StageOf(*head) == DrawnStage::Dead;
        std::string attributes =
            Compose("tooltip=", QuoteTooltip(Compose(tail->Name, ".", edge.TailPort, " -> ",
                                                     head->Name, ".", edge.HeadPort)));
        if (isDead)
            attributes += Compose(", color=\"", StyleOf(DrawnStage::Dead).Line.Format(), "\"");
        if (const auto crossing = _stages.CrossingOf(edge)) {
            attributes +=
                Compose(", penwidth=3, color=\"", StyleOf(DrawnStage::Vertex).Line.Format(), "\"");
            if (!crossing->empty())
                attributes += Compose(", label=\"", *crossing, "\"");
        }
        return Compose("  ", EndOf(*tail, tail->FindOutputPort(edge.TailPort), 'o'), " -> ",
                       EndOf(*head, head->FindInputPort(edge.HeadPort), 'i'), " [", attributes,
                       "]\n");
    }

    std::string EndOf(const ShaderNode& node, std::int32_t port, char side) const
    {
        const std::string& name = _names.at(&node);
        if (node.Kind != ShaderNodeKind::Function || IsConversion(node) || port < 0)
            return name;
        return Compose(name, ":", std::string(1, side), port, ":", side == 'i' ? "w" : "e");
    }

    /// Formats the meaning of the colours as cells of a table row.
    std::string FormatLegend() const
    {
        std::string cells;
        for (const StageStyle& style : stageStyles) {
            if (_stages.IsKnown() && style.Stage != DrawnStage::None) {
                cells += Compose("<TD BORDER=\"1\" BGCOLOR=\"", style.Area.Format(), "\" COLOR=\"",
                                 style.Line.Format(), "\">", style.Name, "</TD>");
            }
        }
        if (!cells.empty())
            cells += "<TD BORDER=\"0\">thick lines are handed from the vertex to the fragment "
                     "program</TD>";
        return cells;
    }

    const GeneratedShader& _shader;
    const ShaderStages& _stages;
    const ProblemMarks& _marks;
    std::unordered_map<const ShaderNode*, std::string> _names; ///< in the DOT source
};

} // namespace

Drawing DrawShader(const GeneratedShader& shader, ProblemList& problems)
{
    const ShaderStages stages(shader, problems);
    return ShaderDrawing(shader, stages, ProblemMarks(problems)).Draw();
}

} // namespace Mox::Host
