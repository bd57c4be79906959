#include "mox/graph/BindingsDocument.h"

#include "mox/Text.h"
#include "mox/bindings/DocumentKeys.h"
#include "mox/bindings/XmlAttributes.h"
#include "mox/document/PropertyText.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/xml/XmlTree.h"
#include "mox/xml/XmlWriter.h"

#include <map>
#include <memory>
#include <new>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GetXmlAttribute;
using Materials::SetXmlAttribute;

constexpr const char* rootElement = "bindings";
constexpr const char* bindingElement = "binding";
constexpr const char* versionAttribute = "version";
constexpr const char* documentVersion = "1";
constexpr const char* streamAttribute = "stream";
constexpr const char* countAttribute = "count";
constexpr const char* groupAttribute = "group";

/// A standalone XML element that bindings are written to and read from.
class BindingElement
{
public:
    explicit BindingElement(const std::string& name)
        : _node(xmlNewNode(nullptr, reinterpret_cast<const xmlChar*>(name.c_str())), xmlFreeNode)
    {
        // libxml2 does not report a failure to allocate the name.
        if (!_node || !_node->name)
            throw std::bad_alloc();
    }

    explicit BindingElement(const XmlTree& element) : BindingElement(element.Name)
    {
        for (const XmlTree::Attribute& attribute : element.Attributes)
            SetXmlAttribute(Get(), attribute.Name, attribute.Value);
    }

    xmlNodePtr Get() const { return _node.get(); }

    std::vector<DocumentValue> Values() const
    {
        std::vector<DocumentValue> values;
        for (const xmlAttr* attribute = _node->properties; attribute; attribute = attribute->next) {
            const std::string name = reinterpret_cast<const char*>(attribute->name);
            values.push_back({name, GetXmlAttribute(Get(), name)});
        }
        return values;
    }

    void WriteTo(XmlWriter& writer) const
    {
        writer.StartElement(bindingElement);
        for (const DocumentValue& value : Values())
            writer.Attribute(value.Name, value.Value);
        writer.EndElement();
    }

private:
    std::unique_ptr<xmlNode, decltype(&xmlFreeNode)> _node;
};

PluginBinding ReadBinding(const XmlTree& tree)
{
    const Place& where = tree.Where;
    return CallLibrary(where, [&] {
        const BindingElement element(tree);
        constexpr std::int32_t mostComponents = 1024;
        const std::string word = GetXmlAttribute(element.Get(), streamAttribute);
        const auto streamType = ParseStreamType(word);
        if (!streamType)
            throw HostError(where, Compose("unknown stream type \"", word, "\""));
        const std::string countText = GetXmlAttribute(element.Get(), countAttribute);
        const auto count = ParseInteger(countText);
        if (!count || *count < 1 || *count > mostComponents) {
            throw HostError(
                where, Compose("\"", countText, "\" is not a count from 1 to ", mostComponents));
        }
        const auto binding =
            PluginBinding::Create(*streamType, static_cast<std::uint32_t>(*count), where);
        binding.ReadXml(where, element.Get());
        if (const std::string* group = tree.Find(groupAttribute))
            binding.SetGroup(*group);
        return binding;
    });
}

/// Overrides a binding's values with the document's; values that it omits are kept.
void ApplyValues(const Place& where, const DocumentBinding& values, const PluginBinding& binding)
{
    const BindingElement element(bindingElement);
    // Initialised with the binding's current values, so that values omitted by the document are
    // kept.
    binding.WriteXml(element.Get());
    for (const DocumentValue& value : values.Values)
        SetXmlAttribute(element.Get(), value.Name, value.Value);
    binding.ReadXml(where, element.Get());
}

} // namespace

std::vector<PluginBinding> CreateNodeBindings(const GraphNode& node)
{
    if (node.Problems.Building.HasErrors())
        return {};
    return node.Gui.CreateBindings(node.Where);
}

std::vector<PluginBinding> CreateBindings(const MaterialGraph& graph)
{
    std::vector<PluginBinding> bindings;
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        for (PluginBinding& binding : CreateNodeBindings(node))
            bindings.push_back(std::move(binding));
    }
    std::map<std::pair<std::string, std::string>, const PluginBinding*> byName;
    for (const PluginBinding& binding : bindings) // the first of each name takes precedence
        byName.emplace(std::pair(binding.StreamName(), binding.Tag()), &binding);
    for (const DocumentBinding& values : graph.Document().Bindings) {
        const auto binding = byName.find({values.Stream, values.Tag});
        if (binding != byName.end())
            ApplyValues(Place(graph.Document().File, values.Line), values, *binding->second);
    }
    return bindings;
}

DocumentBinding DescribeBinding(const PluginBinding& binding)
{
    const BindingElement element(bindingElement);
    binding.WriteXml(element.Get());
    DocumentBinding record{binding.StreamName(), binding.Tag(), element.Values()};
    std::erase_if(record.Values, [](const DocumentValue& value) {
        return value.Name == Materials::BindingKeys::Tag;
    });
    return record;
}

std::string FormatBindings(const std::vector<PluginBinding>& bindings)
{
    XmlWriter writer;
    writer.StartDocument();
    writer.StartElement(rootElement);
    writer.Attribute(versionAttribute, documentVersion);
    for (const PluginBinding& binding : bindings) {
        const BindingElement element(bindingElement);
        SetXmlAttribute(element.Get(), streamAttribute, binding.StreamName());
        SetXmlAttribute(element.Get(), countAttribute, std::to_string(binding.GetCount()));
        if (!binding.Group().empty())
            SetXmlAttribute(element.Get(), groupAttribute, binding.Group());
        binding.WriteXml(element.Get());
        element.WriteTo(writer);
    }
    writer.EndElement();
    return writer.Finish();
}

std::vector<PluginBinding> ReadBindings(const std::filesystem::path& file)
{
    return ParseBindings(file.string(), ReadFile(file));
}

std::vector<PluginBinding> ParseBindings(const std::string& file, std::string_view text)
{
    const XmlTree root = ParseXmlTree(file, text);
    if (root.Name != rootElement)
        throw HostError(root.Where, "the root element is not <bindings>");
    const std::string version = CallLibrary(
        root.Where, [&] { return GetXmlAttribute(BindingElement(root).Get(), versionAttribute); });
    if (version != documentVersion) {
        throw HostError(root.Where,
                        Compose("bindings version \"", version,
                                "\" is not supported, expected version ", documentVersion));
    }
    constexpr const char* onlyBindings = "only <binding> elements are allowed here";
    if (root.WhereText.Line > 0)
        throw HostError(root.WhereText, onlyBindings);
    std::vector<PluginBinding> bindings;
    for (const XmlTree& child : root.Children) {
        if (child.Name != bindingElement)
            throw HostError(child.Where, onlyBindings);
        if (!child.Children.empty() || child.WhereText.Line > 0)
            throw HostError(child.Where, "a <binding> element must be empty");
        bindings.push_back(ReadBinding(child));
    }
    return bindings;
}

} // namespace Mox::Host
