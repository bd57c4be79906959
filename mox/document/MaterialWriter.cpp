#include "mox/document/MaterialWriter.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/MaterialRules.h"
#include "mox/document/PropertyText.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

namespace {

bool HasAnnotationPart(const MaterialDocument& document)
{
    return !document.Annotations.empty() || !document.Comments.Annotations.Last.empty();
}

std::string_view VersionOf(const MaterialDocument& document)
{
    const auto hasPoints = [](const DocumentEdge& edge) { return !edge.Points.empty(); };
    const bool isPlain = !HasAnnotationPart(document) &&
                         std::none_of(document.Edges.begin(), document.Edges.end(), hasPoints);
    return isPlain ? PlainVersion : AnnotatedVersion;
}

} // namespace

MaterialWriter::MaterialWriter(const std::string& file)
{
    _writer.Where = file;
}

void MaterialWriter::WriteDocument(const MaterialDocument& document)
{
    _writer.StartDocument();
    WriteComments(document.Comments.Document.Before);
    _writer.StartElement(MaterialRule.Name);
    _writer.Attribute("version", VersionOf(document));
    WriteValues(DescriptionRule, document.Description, document.Comments.Description);
    WriteValues(RenderStateRule, document.RenderState, document.Comments.RenderState);

    WriteComments(document.Comments.Nodes.Before);
    _writer.StartElement("nodes");
    for (const DocumentNode& node : document.Nodes)
        WriteNode(node);
    WriteComments(document.Comments.Nodes.Last);
    _writer.EndElement();

    WriteComments(document.Comments.Edges.Before);
    _writer.StartElement("edges");
    for (const DocumentEdge& edge : document.Edges)
        WriteEdge(edge);
    WriteComments(document.Comments.Edges.Last);
    _writer.EndElement();

    WriteComments(document.Comments.Bindings.Before);
    if (!document.Bindings.empty() || !document.Comments.Bindings.Last.empty()) {
        _writer.StartElement("bindings");
        for (const DocumentBinding& binding : document.Bindings)
            WriteBinding(binding);
        WriteComments(document.Comments.Bindings.Last);
        _writer.EndElement();
    }

    WriteComments(document.Comments.Annotations.Before);
    if (HasAnnotationPart(document)) {
        _writer.StartElement("annotations");
        for (const DocumentAnnotation& annotation : document.Annotations)
            WriteAnnotation(annotation);
        WriteComments(document.Comments.Annotations.Last);
        _writer.EndElement();
    }
    WriteComments(document.Comments.Document.Last);
    _writer.EndElement();
}

void MaterialWriter::WriteNode(const DocumentNode& node)
{
    WriteComments(node.Comments);
    _writer.StartElement("node");
    _writer.Attribute("id", node.Id);
    _writer.Where.Node = node.Id;
    _writer.Attribute("type", node.Type);
    _writer.Attribute("version", std::to_string(node.Version));
    for (const DocumentProperty& property : node.Properties)
        WriteProperty(property);
    WriteComments(node.LastComments);
    _writer.EndElement();
    _writer.Where.Node.clear();
}

std::string MaterialWriter::Finish()
{
    return _writer.Finish();
}

void MaterialWriter::WriteProperty(const DocumentProperty& property)
{
    WriteComments(property.Comments);
    _writer.StartElement("property");
    _writer.Attribute("name", property.Name);
    _writer.Attribute("kind", FormatKind(property.Kind));
    _writer.Attribute("value", property.Value);
    _writer.EndElement();
}

void MaterialWriter::WriteEdge(const DocumentEdge& edge)
{
    WriteComments(edge.Comments);
    _writer.StartElement("edge");
    WriteAttributes(EdgeRule, AttributesOf(edge));
    _writer.EndElement();
}

void MaterialWriter::WriteBinding(const DocumentBinding& binding)
{
    WriteComments(binding.Comments);
    _writer.StartElement("binding");
    _writer.Attribute("stream", binding.Stream);
    _writer.Attribute("tag", binding.Tag);
    WriteAttributes(BindingRule, binding.Values);
    _writer.EndElement();
}

void MaterialWriter::WriteAnnotation(const DocumentAnnotation& annotation)
{
    WriteComments(annotation.Comments);
    _writer.StartElement(AnnotationRule.Name);
    WriteAttributes(AnnotationRule, AttributesOf(annotation));
    _writer.EndElement();
}

/// An element of attributes alone, which is left out if there are none.
void MaterialWriter::WriteValues(const ElementRule& rule, const std::vector<DocumentValue>& values,
                                 const DocumentComments& comments)
{
    WriteComments(comments);
    if (values.empty())
        return;
    _writer.StartElement(rule.Name);
    WriteAttributes(rule, values);
    _writer.EndElement();
}

void MaterialWriter::WriteAttributes(const ElementRule& rule, std::vector<DocumentValue> values)
{
    for (const DocumentValue& value : values) {
        if (!rule.OrderOf(value.Name)) {
            throw HostError(_writer.Where, Compose("cannot be written: <", rule.Name,
                                                   "> has no attribute \"", value.Name, "\""));
        }
    }
    std::sort(values.begin(), values.end(),
              [&](const DocumentValue& left, const DocumentValue& right) {
                  return rule.OrderOf(left.Name) < rule.OrderOf(right.Name);
              });
    for (const DocumentValue& value : values)
        _writer.Attribute(value.Name, value.Value);
}

void MaterialWriter::WriteComments(const DocumentComments& comments)
{
    for (const std::string& comment : comments)
        _writer.Comment(comment);
}

} // namespace Mox::Host
