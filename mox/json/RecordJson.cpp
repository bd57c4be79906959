#include "mox/json/RecordJson.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/MaterialRules.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/host/JsonObject.h"

#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

template <class Records>
Json ListToJson(const Records& records)
{
    Json list = Json::array();
    for (const auto& record : records)
        list.push_back(ToJson(record));
    return list;
}

void AddComments(Json& object, const char* name, const DocumentComments& comments)
{
    if (!comments.empty())
        object[name] = comments;
}

/// Whether a comment is unchanged after it has been written and read.
bool IsLastingComment(const std::string& text)
{
    return text.find("--") == std::string::npos && !text.starts_with('-') && !text.ends_with('-') &&
           text.find('\r') == std::string::npos;
}

DocumentComments ReadComments(const JsonCursor& object, std::string_view name)
{
    DocumentComments comments;
    const auto list = object.Find(name);
    if (!list)
        return comments;
    for (const JsonCursor& item : list->Items()) {
        comments.push_back(item.Text());
        if (!IsLastingComment(comments.back())) {
            item.Refuse("a comment cannot begin or end with a hyphen, or contain two hyphens in a "
                        "row or a carriage return");
        }
    }
    return comments;
}

/// Rejects values that are not valid as attributes of a document's element.
void RequireAttributes(const ElementRule& rule, const std::vector<XmlAttribute>& values,
                       const JsonCursor& where)
{
    for (const AttributeProblem& problem : rule.Check(values))
        where.Find(problem.Attribute).value_or(where).Refuse(problem.Message);
}

std::vector<DocumentValue> ReadValues(const JsonCursor& object)
{
    std::vector<DocumentValue> values;
    for (const auto& [name, value] : object.Members())
        values.push_back({name, value.Text()});
    return values;
}

void RequireValues(const ElementRule& rule, const std::vector<DocumentValue>& values,
                   const JsonCursor& where)
{
    std::vector<XmlAttribute> attributes;
    attributes.reserve(values.size());
    for (const DocumentValue& value : values)
        attributes.push_back({value.Name, value.Value});
    RequireAttributes(rule, attributes, where);
}

std::vector<DocumentValue> ReadValues(const JsonCursor& object, const ElementRule& rule)
{
    std::vector<DocumentValue> values = ReadValues(object);
    RequireValues(rule, values, object);
    return values;
}

} // namespace

Json ToJson(const DocumentProperty& property)
{
    Json object = MakeJsonObject();
    object["name"] = property.Name;
    object["kind"] = FormatKind(property.Kind);
    object["value"] = property.Value;
    AddComments(object, "comments", property.Comments);
    return object;
}

Json ToJson(const DocumentNode& node)
{
    Json object = MakeJsonObject();
    object["id"] = node.Id;
    object["type"] = node.Type;
    object["version"] = node.Version;
    object["properties"] = ListToJson(node.Properties);
    AddComments(object, "comments", node.Comments);
    AddComments(object, "lastComments", node.LastComments);
    return object;
}

Json ToJson(const DocumentEdge& edge)
{
    Json object = MakeJsonObject();
    object["tail"] = edge.Tail;
    object["tailPort"] = edge.TailPort;
    object["head"] = edge.Head;
    object["headPort"] = edge.HeadPort;
    if (!edge.Points.empty()) {
        Json points = Json::array();
        for (const DocumentPoint& point : edge.Points)
            points.push_back({{"x", point.X}, {"y", point.Y}});
        object["points"] = std::move(points);
    }
    AddComments(object, "comments", edge.Comments);
    return object;
}

Json ToJson(const std::vector<DocumentValue>& values)
{
    Json object = Json::object();
    for (const DocumentValue& value : values)
        object[value.Name] = value.Value;
    return object;
}

Json ToJson(const DocumentBinding& binding)
{
    Json object = {
        {"stream", binding.Stream}, {"tag", binding.Tag}, {"values", ToJson(binding.Values)}};
    AddComments(object, "comments", binding.Comments);
    return object;
}

Json ToJson(const DocumentAnnotation& annotation)
{
    Json object = {{"id", annotation.Id},        {"kind", FormatAnnotationKind(annotation.Kind)},
                   {"text", annotation.Text},    {"x", annotation.Corner.X},
                   {"y", annotation.Corner.Y},   {"width", annotation.Width},
                   {"height", annotation.Height}};
    if (!annotation.Colour.empty())
        object["colour"] = annotation.Colour;
    AddComments(object, "comments", annotation.Comments);
    return object;
}

Json ToJson(const MaterialDocument& document)
{
    return {{"description", ToJson(document.Description)},
            {"renderState", ToJson(document.RenderState)},
            {"nodes", ListToJson(document.Nodes)},
            {"edges", ListToJson(document.Edges)},
            {"bindings", ListToJson(document.Bindings)},
            {"annotations", ListToJson(document.Annotations)}};
}

void AddPlace(const Place& place, Json& object)
{
    if (!place.File.empty())
        object["file"] = place.File;
    if (place.Line > 0)
        object["line"] = place.Line;
    if (place.Column > 0)
        object["column"] = place.Column;
    if (!place.Node.empty())
        object["node"] = place.Node;
    if (!place.Port.empty())
        object["port"] = place.Port;
}

Json ToJson(const Problem& problem)
{
    Json object = {{"severity", GetSeverityName(problem.Level)}, {"rule", problem.Rule}};
    AddPlace(problem.Where, object);
    object["message"] = problem.Message;
    return object;
}

Json ToJson(const std::vector<Problem>& problems)
{
    return ListToJson(problems);
}

Json ToJson(const MaterialDifference& difference)
{
    constexpr const char* kinds[] = {"added", "removed", "changed"};
    Json object = {{"kind", kinds[static_cast<std::size_t>(difference.Kind)]},
                   {"text", difference.Text}};
    if (!difference.Node.empty())
        object["node"] = difference.Node;
    if (!difference.Property.empty())
        object["property"] = difference.Property;
    if (difference.EdgeBefore)
        object["edgeBefore"] = ToJson(*difference.EdgeBefore);
    if (difference.EdgeAfter)
        object["edgeAfter"] = ToJson(*difference.EdgeAfter);
    return object;
}

DocumentProperty ReadProperty(const JsonCursor& object)
{
    DocumentProperty property;
    property.Name = object.Member("name").Text();
    const std::string kind = object.Member("kind").Text();
    property.Value = object.Member("value").Text();
    RequireAttributes(PropertyRule,
                      {{"name", property.Name}, {"kind", kind}, {"value", property.Value}}, object);
    property.Kind = *ParseKind(kind);
    property.Comments = ReadComments(object, "comments");
    return property;
}

DocumentNode ReadNode(const JsonCursor& object)
{
    DocumentNode node;
    node.Id = object.Member("id").Text();
    JsonCursor named = object;
    named.Concern(node.Id);
    node.Type = named.Member("type").Text();
    node.Version = named.Member("version").Integer();
    if (const auto properties = named.Find("properties")) {
        for (const JsonCursor& property : properties->Items()) {
            property.AllowOnly({"name", "kind", "value", "comments"});
            node.Properties.push_back(ReadProperty(property));
        }
    }
    node.Comments = ReadComments(named, "comments");
    node.LastComments = ReadComments(named, "lastComments");
    return node;
}

DocumentEdge ReadEdge(const JsonCursor& object)
{
    DocumentEdge edge;
    edge.Head = object.Member("head").Text();
    JsonCursor named = object;
    named.Concern(edge.Head);
    edge.HeadPort = named.Member("headPort").Text();
    named.Concern(edge.Head, edge.HeadPort);
    edge.Tail = named.Member("tail").Text();
    edge.TailPort = named.Member("tailPort").Text();
    if (const auto points = named.Find("points")) {
        for (const JsonCursor& point : points->Items()) {
            point.AllowOnly({"x", "y"});
            edge.Points.push_back({point.Member("x").Integer(), point.Member("y").Integer()});
        }
    }
    RequireValues(EdgeRule, AttributesOf(edge), named);
    edge.Comments = ReadComments(named, "comments");
    return edge;
}

DocumentBinding ReadBinding(const JsonCursor& object)
{
    DocumentBinding binding;
    binding.Stream = object.Member("stream").Text();
    binding.Tag = object.Member("tag").Text();
    if (const auto values = object.Find("values"))
        binding.Values = ReadValues(*values);
    std::vector<XmlAttribute> attributes = {{"stream", binding.Stream}, {"tag", binding.Tag}};
    for (const DocumentValue& value : binding.Values) {
        if (value.Name == "stream" || value.Name == "tag")
            object.Refuse(Compose("the values must not contain \"", value.Name,
                                  "\", which is a member of the binding"));
        attributes.push_back({value.Name, value.Value});
    }
    RequireAttributes(BindingRule, attributes, object);
    binding.Comments = ReadComments(object, "comments");
    return binding;
}

DocumentAnnotation ReadAnnotation(const JsonCursor& object)
{
    DocumentAnnotation annotation;
    annotation.Id = object.Member("id").Text();
    const JsonCursor kind = object.Member("kind");
    annotation.Kind = ParseAnnotationKind(kind.Text());
    if (kind.Text() != FormatAnnotationKind(annotation.Kind))
        kind.Refuse("expected \"frame\" or \"note\"");
    annotation.Text = object.Member("text").Text();
    annotation.Corner = {object.Member("x").Integer(), object.Member("y").Integer()};
    annotation.Width = object.Member("width").Integer();
    annotation.Height = object.Member("height").Integer();
    annotation.Colour = object.TextOf("colour");
    annotation.Comments = ReadComments(object, "comments");
    RequireValues(AnnotationRule, AttributesOf(annotation), object);
    return annotation;
}

std::vector<DocumentValue> ReadDescription(const JsonCursor& object)
{
    return ReadValues(object, DescriptionRule);
}

std::vector<DocumentValue> ReadRenderState(const JsonCursor& object)
{
    return ReadValues(object, RenderStateRule);
}

std::string FormatBindingsAsJson(const std::vector<PluginBinding>& bindings)
{
    Json list = Json::array();
    for (const PluginBinding& binding : bindings) {
        Json object = ToJson(DescribeBinding(binding));
        object["count"] = binding.GetCount();
        if (!binding.Group().empty())
            object["group"] = binding.Group();
        list.push_back(std::move(object));
    }
    return FormatJsonLines({{"version", RecordJsonVersion}, {"bindings", std::move(list)}});
}

std::string FormatDifferencesAsJson(const std::vector<MaterialDifference>& differences)
{
    return FormatJsonLines(
        {{"version", RecordJsonVersion}, {"differences", ListToJson(differences)}});
}

} // namespace Mox::Host
