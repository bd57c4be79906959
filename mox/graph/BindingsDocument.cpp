#include "mox/graph/BindingsDocument.h"

#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/XmlAttributes.h"
#include "mox/document/PropertyText.h"
#include "mox/host/File.h"
#include "mox/host/LibraryCall.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

namespace Mox::Host {

namespace {

using Materials::Binding;
using Materials::Compose;
using Materials::GetXmlAttribute;
using Materials::Material;
using Materials::SetXmlAttribute;

using XmlDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

constexpr const char* rootElement = "bindings";
constexpr const char* bindingElement = "binding";
constexpr const char* versionAttribute = "version";
constexpr const char* documentVersion = "1";
constexpr const char* streamAttribute = "stream";
constexpr const char* countAttribute = "count";
constexpr const char* groupAttribute = "group";

const xmlChar* Bytes(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

/// A new node that libxml2 had the memory for; a lack for its name it does not report.
xmlNodePtr Require(xmlNodePtr node)
{
    if (!node || !node->name)
        throw std::bad_alloc();
    return node;
}

bool IsElement(const xmlNode* node, const char* name)
{
    return node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, Bytes(name));
}

/// What stands between elements without a meaning.
bool IsAside(const xmlNode* node)
{
    return node->type == XML_COMMENT_NODE || node->type == XML_PI_NODE || xmlIsBlankNode(node);
}

XmlDocument ParseXml(const std::filesystem::path& file)
{
    const std::string bytes = ReadFile(file);
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(),
                                                                              xmlFreeParserCtxt);
    if (!parser)
        throw std::bad_alloc();
    XmlDocument document(xmlCtxtReadMemory(parser.get(), bytes.data(),
                                           static_cast<int>(bytes.size()), file.c_str(), nullptr,
                                           XML_PARSE_NONET | XML_PARSE_BIG_LINES |
                                               XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
                         xmlFreeDoc);
    const int code = parser->lastError.code;
    if (code == XML_ERR_NO_MEMORY || (!document && code == XML_ERR_OK))
        throw std::bad_alloc();
    if (!document) {
        // Further lines of a message quote the bytes concerned.
        const std::string message = parser->lastError.message ? parser->lastError.message : "";
        throw HostError({file.string(), parser->lastError.line, {}, {}},
                        message.substr(0, message.find('\n')));
    }
    if (document->intSubset)
        throw HostError({file.string(), 0, {}, {}}, "document type declarations are not allowed");
    return document;
}

/// The stream type with that word.
std::optional<Materials::StreamType> ParseStreamType(const std::string& word)
{
    for (std::uint32_t value = 1;; ++value) {
        const auto streamType = static_cast<Materials::StreamType>(value);
        const auto binding = Materials::CreateBinding(streamType, "", 1);
        if (!binding)
            return std::nullopt;
        if (binding->GetStreamTypeName() == word)
            return streamType;
    }
}

boost::shared_ptr<Binding> ReadBinding(xmlNodePtr element, const Place& where)
{
    return CallLibrary(where, [&] {
        constexpr std::int32_t mostComponents = 1024;
        const std::string word = GetXmlAttribute(element, streamAttribute);
        const auto streamType = ParseStreamType(word);
        if (!streamType)
            throw HostError(where, Compose("there is no stream type \"", word, "\""));
        const std::string countText = GetXmlAttribute(element, countAttribute);
        const auto count = ParseInteger(countText);
        if (!count || *count < 1 || *count > mostComponents) {
            throw HostError(where,
                            Compose("\"", countText, "\" is no count from 1 to ", mostComponents));
        }
        const auto binding =
            Materials::CreateBinding(*streamType, "", static_cast<std::uint32_t>(*count));
        binding->ReadXml(element);
        if (xmlHasProp(element, Bytes(groupAttribute)))
            binding->group = GetXmlAttribute(element, groupAttribute);
        return binding;
    });
}

} // namespace

void ApplyValues(const DocumentBinding& values, Binding& binding)
{
    const XmlDocument document(xmlNewDoc(Bytes("1.0")), xmlFreeDoc);
    if (!document)
        throw std::bad_alloc();
    xmlNodePtr element = Require(xmlNewNode(nullptr, Bytes(bindingElement)));
    xmlDocSetRootElement(document.get(), element);
    // What the document leaves out must stay, so it is laid over what the binding has.
    binding.WriteXml(element);
    for (const DocumentValue& value : values.Values)
        SetXmlAttribute(element, value.Name, value.Value);
    binding.ReadXml(element);
}

boost::shared_ptr<Material> CreateBindings(const MaterialGraph& graph)
{
    auto material = boost::make_shared<Material>();
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        CallLibrary(node.Where, [&] {
            if (node.Gui->HasBinding())
                node.Gui->CreateBindings(material);
        });
    }
    for (const DocumentBinding& values : graph.Bindings) {
        const auto binding = std::find_if(
            material->Bindings.begin(), material->Bindings.end(), [&](const auto& candidate) {
                return candidate->tag == values.Tag &&
                       candidate->GetStreamTypeName() == values.Stream;
            });
        if (binding != material->Bindings.end())
            CallLibrary({{}, values.Line, {}, {}}, [&] { ApplyValues(values, **binding); });
    }
    return material;
}

std::string FormatBindings(const Material& material)
{
    const XmlDocument document(xmlNewDoc(Bytes("1.0")), xmlFreeDoc);
    if (!document)
        throw std::bad_alloc();
    xmlNodePtr root = xmlNewNode(nullptr, Bytes(rootElement));
    xmlDocSetRootElement(document.get(), root);
    Require(root);
    SetXmlAttribute(root, versionAttribute, documentVersion);
    for (const auto& binding : material.Bindings) {
        xmlNodePtr element = Require(xmlNewChild(root, nullptr, Bytes(bindingElement), nullptr));
        SetXmlAttribute(element, streamAttribute, binding->GetStreamTypeName());
        SetXmlAttribute(element, countAttribute, std::to_string(binding->GetCount()));
        if (!binding->group.empty())
            SetXmlAttribute(element, groupAttribute, binding->group);
        binding->WriteXml(element);
    }
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document.get(), &bytes, &size, "UTF-8", 1);
    const std::unique_ptr<xmlChar, void (*)(xmlChar*)> owner(bytes,
                                                             [](xmlChar* text) { xmlFree(text); });
    if (!bytes)
        throw std::bad_alloc();
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

boost::shared_ptr<Material> ReadBindings(const std::filesystem::path& file)
{
    const XmlDocument document = ParseXml(file);
    const auto placeOf = [&](const xmlNode* node) {
        return Place{file.string(), static_cast<int>(xmlGetLineNo(node)), {}, {}};
    };
    xmlNodePtr root = xmlDocGetRootElement(document.get());
    if (!IsElement(root, rootElement))
        throw HostError(placeOf(root), "the root element is not <bindings>");
    const std::string version =
        CallLibrary(placeOf(root), [&] { return GetXmlAttribute(root, versionAttribute); });
    if (version != documentVersion) {
        throw HostError(placeOf(root), Compose("bindings version \"", version,
                                               "\" is not supported; this program reads version ",
                                               documentVersion));
    }
    auto material = boost::make_shared<Material>();
    for (xmlNodePtr child = root->children; child; child = child->next) {
        if (IsAside(child))
            continue;
        if (!IsElement(child, bindingElement))
            throw HostError(placeOf(child), "only <binding> elements are allowed here");
        for (xmlNodePtr content = child->children; content; content = content->next) {
            if (!IsAside(content))
                throw HostError(placeOf(content), "a <binding> element must be empty");
        }
        material->AddBinding(ReadBinding(child, placeOf(child)));
    }
    return material;
}

} // namespace Mox::Host
