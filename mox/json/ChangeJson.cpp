#include "mox/json/ChangeJson.h"

#include "mox/Text.h"
#include "mox/json/RecordJson.h"
#include "mox/json/StepJson.h"

#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

/// Creates a step with its keyword before its other members.
Json Named(const char* word, const Json& members = Json::object())
{
    Json step = {{"do", word}};
    step.update(members);
    return step;
}

void AddUnlessEmpty(Json& object, const char* name, const std::string& text)
{
    if (!text.empty())
        object[name] = text;
}

struct StepWriter
{
    Json operator()(const AddNode& step) const
    {
        Json json = Named("addNode", ToJson(step.Node));
        AddUnlessEmpty(json, "before", step.Before);
        return json;
    }

    Json operator()(const RemoveNode& step) const { return Named("removeNode", {{"id", step.Id}}); }

    Json operator()(const RenameNode& step) const
    {
        return Named("renameNode", {{"id", step.Id}, {"newId", step.NewId}});
    }

    Json operator()(const AddEdge& step) const
    {
        Json json = Named("addEdge", ToJson(step.Edge));
        AddUnlessEmpty(json, "beforeHead", step.BeforeHead);
        AddUnlessEmpty(json, "beforeHeadPort", step.BeforeHeadPort);
        return json;
    }

    Json operator()(const RemoveEdge& step) const { return Named("removeEdge", ToJson(step.Edge)); }

    Json operator()(const SetPoints& step) const { return Named("setPoints", ToJson(step.Edge)); }

    Json operator()(const SetProperties& step) const
    {
        Json settings = Json::array();
        for (const auto& [node, property] : step.Settings) {
            Json setting = {{"node", node}};
            setting.update(ToJson(property));
            settings.push_back(std::move(setting));
        }
        return Named("setProperties", {{"settings", std::move(settings)}});
    }

    Json operator()(const SetDescription& step) const
    {
        return Named("setDescription", {{"values", ToJson(step.Values)}});
    }

    Json operator()(const SetRenderState& step) const
    {
        return Named("setRenderState", {{"values", ToJson(step.Values)}});
    }

    Json operator()(const SetBinding& step) const
    {
        return Named("setBinding", ToJson(step.Binding));
    }

    Json operator()(const RemoveBinding& step) const
    {
        return Named("removeBinding", {{"stream", step.Stream}, {"tag", step.Tag}});
    }

    Json operator()(const AddAnnotation& step) const
    {
        return Named("addAnnotation", ToJson(step.Annotation));
    }

    Json operator()(const SetAnnotation& step) const
    {
        return Named("setAnnotation", ToJson(step.Annotation));
    }

    Json operator()(const RemoveAnnotation& step) const
    {
        return Named("removeAnnotation", {{"id", step.Id}});
    }
};

GraphStep ReadAddNode(const JsonCursor& step)
{
    step.AllowOnly(
        {"do", "id", "type", "version", "properties", "comments", "lastComments", "before"});
    return AddNode{ReadNode(step), step.TextOf("before")};
}

GraphStep ReadRemoveNode(const JsonCursor& step)
{
    step.AllowOnly({"do", "id"});
    return RemoveNode{step.Member("id").Text()};
}

GraphStep ReadRenameNode(const JsonCursor& step)
{
    step.AllowOnly({"do", "id", "newId"});
    return RenameNode{step.Member("id").Text(), step.Member("newId").Text()};
}

GraphStep ReadAddEdge(const JsonCursor& step)
{
    step.AllowOnly({"do", "tail", "tailPort", "head", "headPort", "points", "comments",
                    "beforeHead", "beforeHeadPort"});
    return AddEdge{ReadEdge(step), step.TextOf("beforeHead"), step.TextOf("beforeHeadPort")};
}

template <class Step>
GraphStep ReadEdgeStep(const JsonCursor& step)
{
    step.AllowOnly({"do", "tail", "tailPort", "head", "headPort", "points", "comments"});
    return Step{ReadEdge(step)};
}

GraphStep ReadSetProperties(const JsonCursor& step)
{
    step.AllowOnly({"do", "settings"});
    SetProperties set;
    for (JsonCursor& setting : step.Member("settings").Items()) {
        setting.AllowOnly({"node", "name", "kind", "value", "comments"});
        const std::string node = setting.Member("node").Text();
        setting.Concern(node);
        set.Settings.push_back({node, ReadProperty(setting)});
    }
    return set;
}

GraphStep ReadSetDescription(const JsonCursor& step)
{
    step.AllowOnly({"do", "values"});
    return SetDescription{ReadDescription(step.Member("values"))};
}

GraphStep ReadSetRenderState(const JsonCursor& step)
{
    step.AllowOnly({"do", "values"});
    return SetRenderState{ReadRenderState(step.Member("values"))};
}

GraphStep ReadSetBinding(const JsonCursor& step)
{
    step.AllowOnly({"do", "stream", "tag", "values", "comments"});
    return SetBinding{ReadBinding(step)};
}

GraphStep ReadRemoveBinding(const JsonCursor& step)
{
    step.AllowOnly({"do", "stream", "tag"});
    return RemoveBinding{step.Member("stream").Text(), step.Member("tag").Text()};
}

template <class Step>
GraphStep ReadAnnotationStep(const JsonCursor& step)
{
    step.AllowOnly({"do", "id", "kind", "text", "x", "y", "width", "height", "colour", "comments"});
    return Step{ReadAnnotation(step)};
}

GraphStep ReadRemoveAnnotation(const JsonCursor& step)
{
    step.AllowOnly({"do", "id"});
    return RemoveAnnotation{step.Member("id").Text()};
}

constexpr std::pair<std::string_view, GraphStep (*)(const JsonCursor&)> stepReaders[] = {
    {"addNode", ReadAddNode},
    {"removeNode", ReadRemoveNode},
    {"renameNode", ReadRenameNode},
    {"addEdge", ReadAddEdge},
    {"removeEdge", ReadEdgeStep<RemoveEdge>},
    {"setPoints", ReadEdgeStep<SetPoints>},
    {"setProperties", ReadSetProperties},
    {"setDescription", ReadSetDescription},
    {"setRenderState", ReadSetRenderState},
    {"setBinding", ReadSetBinding},
    {"removeBinding", ReadRemoveBinding},
    {"addAnnotation", ReadAnnotationStep<AddAnnotation>},
    {"setAnnotation", ReadAnnotationStep<SetAnnotation>},
    {"removeAnnotation", ReadRemoveAnnotation},
};

GraphStep ReadStep(const JsonCursor& step)
{
    const JsonCursor word = step.Member("do");
    const std::string text = word.Text();
    std::string known;
    for (const auto& [name, read] : stepReaders) {
        if (text == name)
            return read(step);
        known += Compose(known.empty() ? "\"" : ", \"", name, "\"");
    }
    word.Refuse(Compose("expected one of ", known));
}

} // namespace

Json StepsToJson(const GraphChange& change)
{
    Json steps = Json::array();
    for (const GraphStep& step : change.Steps)
        steps.push_back(std::visit(StepWriter(), step));
    return steps;
}

GraphChange ReadSteps(const JsonCursor& array)
{
    GraphChange change;
    for (const JsonCursor& step : array.Items())
        change.Steps.push_back(ReadStep(step));
    return change;
}

std::string FormatChangeAsJson(const GraphChange& change)
{
    return FormatJsonLines({{"version", ChangeJsonVersion}, {"steps", StepsToJson(change)}});
}

GraphChange ParseChangeJson(std::string_view text, const std::string& source)
{
    const Json json = ParseJson(text, source);
    const JsonCursor whole(json, source);
    whole.AllowOnly({"version", "steps"});
    const JsonCursor version = whole.Member("version");
    if (version.Integer() != ChangeJsonVersion) {
        version.Refuse(Compose("version ", version.Integer(), " is not supported, expected ",
                               ChangeJsonVersion));
    }
    return ReadSteps(whole.Member("steps"));
}

} // namespace Mox::Host
