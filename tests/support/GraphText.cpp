#include "tests/support/GraphText.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/PropertyText.h"

#include <set>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Mox::Materials::GuiEdge;
using Mox::Materials::GuiNode;
using Mox::Materials::GuiPort;
using Mox::Materials::GuiPropertyKind;

namespace {

std::string FormatEdges(const GuiNode::EdgeList& edges)
{
    std::multiset<std::string> sorted;
    for (const auto& entry : edges) {
        const boost::shared_ptr<GuiEdge> edge(entry);
        const boost::shared_ptr<GuiNode> tail(edge->Tail);
        const boost::shared_ptr<GuiNode> head(edge->Head);
        sorted.insert(Compose(tail->Describe(), edge->TailPort, head->Describe(), edge->HeadPort));
    }
    std::string text;
    for (const std::string& edge : sorted)
        text += Compose("    edge ", edge, "\n");
    return text;
}

std::string FormatPorts(const std::vector<GuiPort>& ports)
{
    std::string text;
    for (const GuiPort& port : ports) {
        text += Compose("    ", port.Name, " ", port.Label, " ", port.ComponentCount, " ",
                        port.CountKnown, port.CountFixed, port.CountConflict, " ",
                        static_cast<int>(port.Precision), " ", port.PrecisionKnown,
                        port.PrecisionFixed, " ", port.Connected, "\n");
    }
    return text;
}

} // namespace

std::string FormatDocument(const MaterialDocument& document)
{
    std::string text;
    for (const auto* values : {&document.Description, &document.RenderState}) {
        for (const auto& [name, value] : *values)
            text += Compose(name, "=", value, "\n");
    }
    for (const DocumentNode& node : document.Nodes) {
        text += Compose("node ", node.Id, " ", node.Type, " ", node.Version, "\n");
        for (const DocumentProperty& property : node.Properties) {
            text += Compose("  ", property.Name, " ", FormatKind(property.Kind), " ",
                            property.Value, "\n");
        }
    }
    for (const DocumentEdge& edge : document.Edges) {
        text += Compose("edge ", edge.Tail, " ", edge.TailPort, " ", edge.Head, " ", edge.HeadPort,
                        edge.Points.empty() ? "" : " ", FormatPoints(edge.Points), "\n");
    }
    for (const DocumentBinding& binding : document.Bindings) {
        text += Compose("binding ", binding.Stream, " ", binding.Tag, "\n");
        for (const auto& [name, value] : binding.Values)
            text += Compose("  ", name, "=", value, "\n");
    }
    for (const DocumentAnnotation& annotation : document.Annotations) {
        text += "annotation";
        for (const auto& [name, value] : AttributesOf(annotation))
            text += Compose(" ", name, "=", value);
        text += "\n";
    }
    return text;
}

std::string DescribeNodes(const MaterialGraph& graph)
{
    std::string text;
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        text += Compose(node.Id, " ", node.Gui.GetTitle(node.Where), "\n");
        for (const auto& property : node.Gui.Properties().Properties) {
            if (node.IsPlaceholder && property->Name == "Description")
                continue;
            text +=
                Compose("  ", property->Name, " ",
                        property->Kind == GuiPropertyKind::Node ? graph.IdOf(property->Node.get())
                                                                : FormatValue(*property),
                        " ", property->Editable, property->Visible, "\n");
        }
        text += Compose("  in\n", FormatPorts(node.Gui.InputPorts()), "  out\n",
                        FormatPorts(node.Gui.OutputPorts()), FormatEdges(node.Gui.InEdges()),
                        FormatEdges(node.Gui.OutEdges()));
    }
    return text;
}

std::string DescribeGraph(const MaterialGraph& graph)
{
    std::string text = FormatDocument(graph.Document()) + DescribeNodes(graph);
    for (const MaterialGraph::Edge& edge : graph.Edges()) {
        text += Compose(graph.Nodes()[edge.Tail].Id, " ", edge.Gui->TailPort, " -> ",
                        graph.Nodes()[edge.Head].Id, " ", edge.Gui->HeadPort, "\n");
    }
    ProblemList problems;
    graph.ReportProblems(problems);
    for (const Problem& problem : problems.Problems())
        text += Compose(problem.Rule, " ", problem.Where.Node, " ", problem.Message, "\n");
    return text;
}

std::string FormatProblems(const ProblemList& problems)
{
    std::string text;
    for (const Problem& problem : problems.Problems()) {
        text += Compose(problem.Level == Severity::Error ? "error " : "warning ", problem.Rule,
                        ": ", problem.Format(), "\n");
    }
    return text;
}
