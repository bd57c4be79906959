#include "mox/graph/GraphChange.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/PropertyText.h"

namespace Mox::Host {

namespace {

using Materials::Compose;

std::string FormatProperty(const DocumentProperty& property)
{
    return Compose("\"", property.Name, "\" = ", FormatKind(property.Kind), " \"", property.Value,
                   "\"");
}

std::string FormatEdge(const DocumentEdge& edge)
{
    return Compose("edge \"", edge.Tail, "\" port \"", edge.TailPort, "\" -> \"", edge.Head,
                   "\" port \"", edge.HeadPort, "\"");
}

std::string FormatBinding(const std::string& stream, const std::string& tag)
{
    return Compose(stream, " binding \"", tag, "\"");
}

std::string FormatPointsOf(const DocumentEdge& edge)
{
    return edge.Points.empty() ? "" : Compose("  through ", FormatPoints(edge.Points), "\n");
}

std::string FormatAnnotation(const DocumentAnnotation& annotation)
{
    std::string text = Compose(FormatAnnotationKind(annotation.Kind), " \"", annotation.Id, "\"\n");
    for (const auto& [name, value] : AttributesOf(annotation))
        text += Compose("  ", name, "=\"", value, "\"\n");
    return text;
}

std::string FormatValues(const std::vector<DocumentValue>& values)
{
    std::string text;
    for (const auto& [name, value] : values)
        text += Compose(" ", name, "=\"", value, "\"");
    return text;
}

struct StepFormatter
{
    std::string operator()(const AddNode& step) const
    {
        std::string text =
            Compose("add node \"", step.Node.Id, "\" (", step.Node.Type, ")",
                    step.Before.empty() ? "" : Compose(" before \"", step.Before, "\""), "\n");
        for (const DocumentProperty& property : step.Node.Properties)
            text += Compose("  stored ", FormatProperty(property), "\n");
        return text;
    }

    std::string operator()(const RemoveNode& step) const
    {
        return Compose("remove node \"", step.Id, "\"\n");
    }

    std::string operator()(const RenameNode& step) const
    {
        return Compose("rename node \"", step.Id, "\" to \"", step.NewId, "\"\n");
    }

    std::string operator()(const AddEdge& step) const
    {
        return Compose("add ", FormatEdge(step.Edge),
                       step.BeforeHead.empty() ? ""
                                               : Compose(" before the edge to \"", step.BeforeHead,
                                                         "\" port \"", step.BeforeHeadPort, "\""),
                       "\n", FormatPointsOf(step.Edge));
    }

    std::string operator()(const RemoveEdge& step) const
    {
        return Compose("remove ", FormatEdge(step.Edge), "\n");
    }

    std::string operator()(const SetPoints& step) const
    {
        return Compose("set points of ", FormatEdge(step.Edge), "\n", FormatPointsOf(step.Edge));
    }

    std::string operator()(const SetProperties& step) const
    {
        std::string text;
        for (const auto& [node, property] : step.Settings)
            text += Compose("set node \"", node, "\" ", FormatProperty(property), "\n");
        return text;
    }

    std::string operator()(const SetDescription& step) const
    {
        return Compose("set description", FormatValues(step.Values), "\n");
    }

    std::string operator()(const SetRenderState& step) const
    {
        return Compose("set render state", FormatValues(step.Values), "\n");
    }

    std::string operator()(const SetBinding& step) const
    {
        return Compose("set ", FormatBinding(step.Binding.Stream, step.Binding.Tag),
                       FormatValues(step.Binding.Values), "\n");
    }

    std::string operator()(const RemoveBinding& step) const
    {
        return Compose("remove ", FormatBinding(step.Stream, step.Tag), "\n");
    }

    std::string operator()(const AddAnnotation& step) const
    {
        return "add " + FormatAnnotation(step.Annotation);
    }

    std::string operator()(const SetAnnotation& step) const
    {
        return "set " + FormatAnnotation(step.Annotation);
    }

    std::string operator()(const RemoveAnnotation& step) const
    {
        return Compose("remove annotation \"", step.Id, "\"\n");
    }
};

} // namespace

std::string GraphChange::Format() const
{
    std::string text;
    for (const GraphStep& step : Steps)
        text += std::visit(StepFormatter(), step);
    return text;
}

std::string GraphChange::Summary() const
{
    if (Steps.empty())
        return {};
    const std::string first = std::visit(StepFormatter(), Steps.front());
    std::size_t more = Steps.size() - 1;
    if (const auto* set = std::get_if<SetProperties>(&Steps.front()); set && !set->Settings.empty())
        more += set->Settings.size() - 1;
    return Compose(first.substr(0, first.find('\n')),
                   more > 0 ? Compose(" and ", more, " more") : "");
}

} // namespace Mox::Host
