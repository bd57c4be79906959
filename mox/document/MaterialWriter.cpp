#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/MaterialDocument.h"
#include "mox/document/MaterialRules.h"
#include "mox/document/PropertyText.h"
#include "mox/xml/XmlWriter.h"

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

/// Writes documents, or single nodes, in canonical form.
class MaterialWriter
{
public:
    explicit MaterialWriter(const std::string& file) { _writer.Where = file; }

    void Write(const MaterialDocument& document)
    {
        const MaterialComments& comments = document.Comments;
        _writer.StartDocument();
        Write(comments.Document.Before);
        _writer.StartElement(MaterialRule.Name);
        _writer.Attribute("version", VersionOf(document));
        WriteValues(DescriptionRule, document.Description, comments.Description);
        WriteValues(RenderStateRule, document.RenderState, comments.RenderState);
        WritePart("nodes", document.Nodes, comments.Nodes, true);
        WritePart("edges", document.Edges, comments.Edges, true);
        WritePart("bindings", document.Bindings, comments.Bindings, false);
        WritePart("annotations", document.Annotations, comments.Annotations, false);
        Write(comments.Document.Last);
        _writer.EndElement();
    }

    void Write(const DocumentNode& node)
    {
        Write(node.Comments);
        _writer.StartElement("node");
        _writer.Attribute("id", node.Id);
        _writer.Where.Node = node.Id;
        _writer.Attribute("type", node.Type);
        _writer.Attribute("version", std::to_string(node.Version));
        for (const DocumentProperty& property : node.Properties)
            Write(property);
        Write(node.LastComments);
        _writer.EndElement();
        _writer.Where.Node.clear();
    }

    std::string Finish() { return _writer.Finish(); }

private:
    void Write(const DocumentComments& comments)
    {
        for (const std::string& comment : comments)
            _writer.Comment(comment);
    }

    void Write(const DocumentProperty& property)
    {
        Write(property.Comments);
        _writer.StartElement("property");
        _writer.Attribute("name", property.Name);
        _writer.Attribute("kind", FormatKind(property.Kind));
        _writer.Attribute("value", property.Value);
        _writer.EndElement();
    }

    void Write(const DocumentEdge& edge)
    {
        Write(edge.Comments);
        _writer.StartElement("edge");
        WriteAttributes(EdgeRule, AttributesOf(edge));
        _writer.EndElement();
    }

    void Write(const DocumentBinding& binding)
    {
        Write(binding.Comments);
        _writer.StartElement("binding");
        _writer.Attribute("stream", binding.Stream);
        _writer.Attribute("tag", binding.Tag);
        WriteAttributes(BindingRule, binding.Values);
        _writer.EndElement();
    }

    void Write(const DocumentAnnotation& annotation)
    {
        Write(annotation.Comments);
        _writer.StartElement(AnnotationRule.Name);
        WriteAttributes(AnnotationRule, AttributesOf(annotation));
        _writer.EndElement();
    }

    /// @param isRequired whether to write the part even if it is empty
    template <class Records>
    void WritePart(std::string_view name, const Records& records, const SectionComments& comments,
                   bool isRequired)
    {
        Write(comments.Before);
        if (!isRequired && records.empty() && comments.Last.empty())
            return;
        _writer.StartElement(name);
        for (const auto& record : records)
            Write(record);
        Write(comments.Last);
        _writer.EndElement();
    }

    /// Writes an element that has only attributes; omits it if there are none.
    void WriteValues(const ElementRule& rule, const std::vector<DocumentValue>& values,
                     const DocumentComments& comments)
    {
        Write(comments);
        if (values.empty())
            return;
        _writer.StartElement(rule.Name);
        WriteAttributes(rule, values);
        _writer.EndElement();
    }

    void WriteAttributes(const ElementRule& rule, std::vector<DocumentValue> values)
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

    XmlWriter _writer;
};

template <class Content>
std::string Format(const Content& content, const std::string& file)
{
    MaterialWriter writer(file);
    writer.Write(content);
    return writer.Finish();
}

} // namespace

std::string FormatMaterialDocument(const MaterialDocument& document)
{
    return Format(document, document.File);
}

std::string FormatNode(const DocumentNode& node)
{
    return Format(node, {});
}

} // namespace Mox::Host
