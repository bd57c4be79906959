#include "mox/pictures/MaterialPicture.h"

#include "mox/Text.h"
#include "mox/host/PluginNode.h"
#include "mox/host/Xpm.h"
#include "mox/layout/FramePlan.h"
#include "mox/pictures/DotText.h"
#include "mox/pictures/PictureStyle.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiPort;

constexpr float mutedShare = 0.25f;             ///< share of the background in less important text
constexpr float lineShare = 0.45f;              ///< share of black in lines around a background
constexpr const char* blank = "&#160;";         ///< Graphviz rejects an empty label
constexpr const char* annotationOpacity = "28"; ///< alpha as the last digits of a colour

/// A port in the diagram.
struct DrawnPort
{
    std::string Name;
    std::string Label;
    std::string Type; ///< with a question mark for what is unknown
    bool IsConflict = false;
    bool IsConnected = false;
};

/// The ports on one side of a node.
struct DrawnPorts
{
    std::vector<DrawnPort> Ports;
    std::unordered_map<std::string, std::size_t> Positions; ///< of the first port with each name
};

struct DrawnNode
{
    std::string Name; ///< in the DOT source
    const MaterialGraph::Node* Node;
    DrawnPorts Inputs;
    DrawnPorts Outputs;
};

std::string FormatPortType(const GuiPort& port)
{
    const std::string known = PrecisionOf(port);
    const std::string precision = known.empty() ? "?" : known;
    if (port.PrecisionKnown && port.CountKnown && port.ComponentCount == 1)
        return precision;
    const std::string count = port.CountKnown ? Compose(port.ComponentCount) : "?";
    return precision == count ? "?" : precision + count;
}

DrawnPorts DrawnPortsOf(const std::vector<GuiPort>& ports)
{
    DrawnPorts drawn;
    for (const GuiPort& port : ports) {
        drawn.Positions.emplace(port.Name, drawn.Ports.size());
        drawn.Ports.push_back({port.Name, port.Label.empty() ? port.Name : port.Label,
                               FormatPortType(port), port.CountConflict});
    }
    return drawn;
}

/// Returns the position of a port, and adds it if the node has no port with that name.
std::size_t FindOrAddPort(DrawnPorts& ports, const std::string& name)
{
    const auto [position, isNew] = ports.Positions.emplace(name, ports.Ports.size());
    if (isNew)
        ports.Ports.push_back({name, name, "?"});
    ports.Ports[position->second].IsConnected = true;
    return position->second;
}

class MaterialDrawing
{
public:
    MaterialDrawing(const MaterialGraph& graph, const ProblemList& problems,
                    const std::map<std::string, Picture>& images)
        : _graph(graph), _marks(problems), _images(images)
    {
        for (const MaterialGraph::Node& node : graph.Nodes()) {
            _index.emplace(node.Gui.Handle().get(), _nodes.size());
            _nodes.push_back({Compose("n", _nodes.size() + 1), &node,
                              DrawnPortsOf(node.Gui.InputPorts()),
                              DrawnPortsOf(node.Gui.OutputPorts())});
        }
    }

    Drawing Draw()
    {
        // Draw edges first, since they may add ports.
        std::string edges;
        for (const auto& edge : _graph.Edges())
            edges += DrawEdge(*edge.Gui);
        std::unordered_set<std::string> ids;
        for (const DrawnNode& node : _nodes)
            ids.insert(node.Node->Id);
        _drawing.Dot = OpenDot() + FormatCaption(_marks.Elsewhere(ids));
        _drawing.Dot += DrawItems() + edges;
        for (const DrawnNode& node : _nodes)
            _drawing.Dot += DrawReferences(node);
        _drawing.Dot += "}\n";
        return std::move(_drawing);
    }

private:
    /// Draws nodes and annotations; those in a frame form a cluster.
    std::string DrawItems()
    {
        const FramePlan plan = PlanFrames(_graph);
        std::vector<std::string> texts(plan.ItemCount() + 1); // contents of each frame
        const auto add = [&](std::size_t item, const std::string& text) {
            const std::size_t parent = plan.Parents[item];
            texts[parent == FramePlan::None ? plan.ItemCount() : parent] += text;
        };
        for (std::size_t item = 0; item < plan.Nodes.size(); ++item)
            add(item, DrawNode(_nodes[item]));
        const auto annotationOf = [&](std::size_t item) -> const DocumentAnnotation& {
            return _graph.Document().Annotations[plan.Annotations[item - plan.Nodes.size()]];
        };
        for (std::size_t item = plan.Nodes.size(); item < plan.ItemCount(); ++item) {
            if (annotationOf(item).Kind == AnnotationKind::Note)
                add(item, DrawNote(annotationOf(item), item));
        }
        for (const std::size_t frame : plan.Frames)
            add(frame, DrawFrame(annotationOf(frame), frame, texts[frame]));
        return texts.back();
    }

    static std::string DrawNote(const DocumentAnnotation& note, std::size_t item)
    {
        return Compose("  a", item + 1, " [shape=note, style=filled, color=\"", LineOf(note),
                       "\", fillcolor=\"", LineOf(note), annotationOpacity, "\", label=<",
                       WrapLabel(note.Text, maxNameLength), ">]\n");
    }

    static std::string DrawFrame(const DocumentAnnotation& frame, std::size_t item,
                                 const std::string& content)
    {
        return Compose("  subgraph cluster_a", item + 1, " {\n  label=<", blank,
                       EscapeLabel(Shorten(frame.Text, maxNameLength)), ">\n  labeljust=l\n",
                       "  style=\"rounded,filled\"\n  color=\"", LineOf(frame),
                       "\"\n  fillcolor=\"", LineOf(frame), annotationOpacity, "\"\n",
                       content.empty() ? Compose("  a", item + 1, " [style=invis]\n") : content,
                       "  }\n");
    }

    static std::string LineOf(const DocumentAnnotation& annotation)
    {
        return annotation.Colour.empty() ? "#8a8a8a" : annotation.Colour;
    }

    std::string DrawEdge(const Materials::GuiEdge& edge)
    {
        DrawnNode* tail = Find(edge.Tail.lock().get());
        DrawnNode* head = Find(edge.Head.lock().get());
        if (!tail || !head)
            return {};
        const std::size_t output = FindOrAddPort(tail->Outputs, edge.TailPort);
        const std::size_t input = FindOrAddPort(head->Inputs, edge.HeadPort);
        const ProblemMark mark = MarkOf(*head, head->Inputs.Ports[input]);
        std::string attributes =
            Compose("tooltip=", QuoteTooltip(Compose(tail->Node->Id, ".", edge.TailPort, " -> ",
                                                     head->Node->Id, ".", edge.HeadPort)));
        if (mark.IsProblem && mark.Level == Severity::Error)
            attributes += Compose(", color=\"", LineColourOf(mark.Level).Format(), "\"");
        return Compose("  ", tail->Name, ":o", output, ":e -> ", head->Name, ":i", input, ":w [",
                       attributes, "]\n");
    }

    /// Draws lines from the nodes that a node refers to. They do not affect the layout.
    std::string DrawReferences(const DrawnNode& node)
    {
        std::string lines;
        for (const auto& property : node.Node->Gui.Properties().Properties) {
            const DrawnNode* target = Find(property->Node.get());
            if (!target)
                continue;
            lines += Compose("  ", target->Name, " -> ", node.Name,
                             " [style=dotted, arrowhead=vee, constraint=false, tooltip=",
                             QuoteTooltip(Compose(node.Node->Id, ": ", property->Name)), "]\n");
        }
        return lines;
    }

    DrawnNode* Find(const GuiNode* node)
    {
        const auto entry = _index.find(node);
        return entry == _index.end() ? nullptr : &_nodes[entry->second];
    }

    /// Returns the mark of a port. Conflicting counts are shown even if no problem reports them.
    ProblemMark MarkOf(const DrawnNode& node, const DrawnPort& port) const
    {
        ProblemMark mark = _marks.OfPort(node.Node->Id, port.Name);
        if (port.IsConflict && mark.Level != Severity::Error) {
            mark.IsProblem = true;
            mark.Level = Severity::Error;
        }
        return mark;
    }

    std::string DrawNode(const DrawnNode& node)
    {
        const PluginNode& gui = node.Node->Gui;
        const ProblemMark& mark = _marks.OfNode(node.Node->Id);
        const Colour background = BackgroundOf(gui);
        const Colour line =
            mark.IsProblem ? LineColourOf(mark.Level) : Mix(background, {0, 0, 0}, lineShare);
        std::string tooltip = gui.Describe();
        if (const std::string& text = gui.Description(); !text.empty())
            tooltip += "\n" + text;
        if (mark.IsProblem)
            tooltip += "\n" + mark.Text;
        std::string table =
            Compose("<TABLE BORDER=\"", mark.IsProblem ? 3 : 1,
                    "\" CELLBORDER=\"0\" CELLSPACING=\"0\" ", "CELLPADDING=\"3\" STYLE=\"ROUNDED",
                    node.Node->IsPlaceholder ? ",DASHED" : "", "\" COLOR=\"", line.Format(),
                    "\" BGCOLOR=\"", background.Format(), "\">", DrawHeader(node));
        const std::size_t rows = std::max(node.Inputs.Ports.size(), node.Outputs.Ports.size());
        if (rows > 0)
            table += "<HR/>";
        for (std::size_t i = 0; i < rows; ++i) {
            table += Compose("<TR>", DrawPort(node, node.Inputs.Ports, i, 'i'), "<TD></TD>",
                             DrawPort(node, node.Outputs.Ports, i, 'o'), "</TR>");
        }
        table += FormatProblemRow(mark) + "</TABLE>";
        return Compose("  ", node.Name, " [tooltip=", QuoteTooltip(tooltip), ", label=<", table,
                       ">]\n");
    }

    std::string DrawHeader(const DrawnNode& node)
    {
        const PluginNode& gui = node.Node->Gui;
        const Colour text = TextColourOf(gui);
        const Colour muted = MutedColourOf(gui);
        // Extra width is distributed over the columns. Fillers keep icon and title together.
        constexpr const char* filler = "<TD COLSPAN=\"12\"></TD>";
        std::string id = EscapeLabel(Shorten(node.Node->Id, maxNameLength));
        if (node.Node->IsPlaceholder)
            id += Compose(" (", EscapeLabel(Shorten(gui.Type(), maxNameLength)), ")");
        const std::string title = EscapeLabel(Shorten(TitleOf(*node.Node), maxNameLength));
        return Compose("<TR><TD COLSPAN=\"3\" ALIGN=\"LEFT\"><TABLE BORDER=\"0\" CELLBORDER=\"0\" "
                       "CELLSPACING=\"0\" CELLPADDING=\"2\"><TR>",
                       DrawImage(node), "<TD ALIGN=\"LEFT\" BALIGN=\"LEFT\">",
                       FontText(nodeTitleSize, text, Compose("<B>", title, "</B>")), "<BR/>",
                       FontText(nodeSmallSize, muted, id), "</TD>", filler,
                       "</TR></TABLE></TD></TR>");
    }

    std::string DrawImage(const DrawnNode& node)
    {
        const auto image = _images.find(node.Node->Id);
        if (image == _images.end() || image->second.Width == 0 || image->second.Height == 0)
            return {};
        constexpr float pointsPerPixel = 0.75f;
        constexpr float maxSide = 96;
        const auto width = static_cast<float>(image->second.Width) * pointsPerPixel;
        const auto height = static_cast<float>(image->second.Height) * pointsPerPixel;
        const float scale = std::min(1.0f, maxSide / std::max(width, height));
        const std::string file = node.Name + ".png";
        _drawing.Images.emplace(file, image->second);
        return Compose("<TD FIXEDSIZE=\"TRUE\" CELLPADDING=\"0\" WIDTH=\"", width * scale,
                       "\" HEIGHT=\"", height * scale, "\"><IMG SCALE=\"TRUE\" SRC=\"", file,
                       "\"/></TD>");
    }

    /// Draws one cell of a row of ports; empty on the side that has fewer ports.
    std::string DrawPort(const DrawnNode& node, const std::vector<DrawnPort>& ports,
                         std::size_t index, char side) const
    {
        if (index >= ports.size())
            return "<TD></TD>";
        const DrawnPort& port = ports[index];
        const ProblemMark mark = MarkOf(node, port);
        const PluginNode& gui = node.Node->Gui;
        const Colour text = mark.IsProblem ? LineColourOf(mark.Level) : TextColourOf(gui);
        const Colour muted = mark.IsProblem ? LineColourOf(mark.Level) : MutedColourOf(gui);
        const std::string pin = port.IsConnected ? "●" : "○";
        const std::string label = EscapeLabel(Shorten(port.Label, maxNameLength));
        const std::string type = FontText(nodeSmallSize, muted, port.Type);
        const bool isInput = side == 'i';
        const std::string row =
            isInput ? FontText(nodePortSize, text, Compose(pin, " ", label, " ")) + type
                    : type + FontText(nodePortSize, text, Compose(" ", label, " ", pin));
        std::string tooltip = port.Name;
        if (mark.IsProblem && !mark.Text.empty())
            tooltip += "\n" + mark.Text;
        return Compose(
            "<TD PORT=\"", std::string(1, side), index, "\" ALIGN=\"",
            side == 'i' ? "LEFT" : "RIGHT", "\" HREF=\"\" TITLE=\"", EscapeTooltip(tooltip), "\"",
            mark.IsProblem ? Compose(" BGCOLOR=\"", AreaColourOf(mark.Level).Format(), "\"") : "",
            ">", row, "</TD>");
    }

    /// Returns the background colour as it appears on a white page.
    static Colour BackgroundOf(const PluginNode& node)
    {
        const float* colour = node.BackgroundColour();
        return Mix({1, 1, 1}, {colour[0], colour[1], colour[2]}, std::clamp(colour[3], 0.0f, 1.0f));
    }

    static Colour TextColourOf(const PluginNode& node)
    {
        const float* colour = node.ForegroundColour();
        return ReadableOn(BackgroundOf(node), {colour[0], colour[1], colour[2]});
    }

    static Colour MutedColourOf(const PluginNode& node)
    {
        return ReadableOn(BackgroundOf(node),
                          Mix(TextColourOf(node), BackgroundOf(node), mutedShare));
    }

    const MaterialGraph& _graph;
    ProblemMarks _marks;
    const std::map<std::string, Picture>& _images;
    std::vector<DrawnNode> _nodes;
    std::unordered_map<const GuiNode*, std::size_t> _index;
    Drawing _drawing;
};

} // namespace

std::map<std::string, Picture> IconsOfNodes(const MaterialGraph& graph, const PluginSet& plugins,
                                            const NodeFiles& files)
{
    std::unordered_map<std::string, const PluginType*> types;
    for (const Plugin& plugin : plugins.Plugins()) {
        for (const PluginType& type : plugin.Types())
            types.emplace(type.TypeName, &type);
    }
    std::unordered_map<std::string, XpmTable> tables; // of the types in the graph
    std::map<std::string, Picture> icons;
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        const auto type = types.find(node.Gui.Type());
        if (type == types.end())
            continue;
        const auto [table, isNew] = tables.try_emplace(type->first);
        if (isNew)
            table->second = files.FindIcon(*type->second);
        if (!table->second.empty())
            icons.emplace(node.Id, DecodeXpm(table->second));
    }
    return icons;
}

Drawing DrawMaterial(const MaterialGraph& graph, const ProblemList& problems,
                     const std::map<std::string, Picture>& images)
{
    return MaterialDrawing(graph, problems, images).Draw();
}

} // namespace Mox::Host
