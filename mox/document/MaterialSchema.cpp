#include "mox/document/MaterialSchema.h"

#include "mox/Text.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>
#include <new>
#include <stdexcept>

namespace Mox::Host {

namespace {

using Materials::Compose;

using XmlDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

std::string AttributeOf(xmlNodePtr node, const char* name)
{
    const std::unique_ptr<xmlChar, void (*)(xmlChar*)> value(
        xmlGetNoNsProp(node, reinterpret_cast<const xmlChar*>(name)),
        [](xmlChar* text) { xmlFree(text); });
    return value ? reinterpret_cast<const char*>(value.get()) : "";
}

std::string TextOf(xmlNodePtr node)
{
    const std::unique_ptr<xmlChar, void (*)(xmlChar*)> value(xmlNodeGetContent(node),
                                                             [](xmlChar* text) { xmlFree(text); });
    if (!value)
        throw std::bad_alloc();
    return reinterpret_cast<const char*>(value.get());
}

std::string NameOf(xmlNodePtr node)
{
    return reinterpret_cast<const char*>(node->name);
}

/// The schema uses a form that has no rule.
[[noreturn]] void Refuse(xmlNodePtr node)
{
    throw std::logic_error(
        Compose("line ", xmlGetLineNo(node), " of the schema: no rule for <", NameOf(node), ">"));
}

/// Makes rules of the patterns of a schema.
class RuleBuilder
{
public:
    explicit RuleBuilder(xmlNodePtr grammar)
    {
        for (xmlNodePtr define = xmlFirstElementChild(grammar); define;
             define = xmlNextElementSibling(define))
            _definitions.emplace(AttributeOf(define, "name"), xmlFirstElementChild(define));
    }

    std::map<std::string, ElementRule> BuildElements() const
    {
        std::map<std::string, ElementRule> elements;
        for (const auto& [name, pattern] : _definitions) {
            if (NameOf(pattern) != "element")
                continue;
            ElementRule rule = BuildElement(pattern);
            elements.emplace(rule.Name, std::move(rule));
        }
        return elements;
    }

    std::string RootName() const { return AttributeOf(Resolve(_definitions.at("")), "name"); }

private:
    /// The pattern itself, or for a reference what it refers to.
    xmlNodePtr Resolve(xmlNodePtr pattern) const
    {
        if (NameOf(pattern) != "ref")
            return pattern;
        const auto definition = _definitions.find(AttributeOf(pattern, "name"));
        if (definition == _definitions.end())
            Refuse(pattern);
        return definition->second;
    }

    ElementRule BuildElement(xmlNodePtr element) const
    {
        ElementRule rule;
        rule.Name = AttributeOf(element, "name");
        for (xmlNodePtr child = xmlFirstElementChild(element); child;
             child = xmlNextElementSibling(child)) {
            const std::string form = NameOf(child);
            const bool isCounted = form == "optional" || form == "zeroOrMore";
            xmlNodePtr inner = isCounted ? Resolve(xmlFirstElementChild(child)) : child;
            if (isCounted && NameOf(inner) == "element")
                rule.Children.push_back({AttributeOf(inner, "name"), form == "zeroOrMore"});
            else if (form == "choice")
                AddVariants(rule, child);
            else
                rule.Attributes.push_back(BuildAttribute(child));
        }
        return rule;
    }

    void AddVariants(ElementRule& rule, xmlNodePtr choice) const
    {
        for (xmlNodePtr group = xmlFirstElementChild(choice); group;
             group = xmlNextElementSibling(group)) {
            if (NameOf(group) != "group")
                Refuse(group);
            std::vector<AttributeRule> variant;
            for (xmlNodePtr child = xmlFirstElementChild(group); child;
                 child = xmlNextElementSibling(child))
                variant.push_back(BuildAttribute(child));
            if (variant.empty() || variant.front().Value.Words().empty())
                Refuse(group);
            rule.Variants.push_back(std::move(variant));
        }
    }

    AttributeRule BuildAttribute(xmlNodePtr pattern) const
    {
        AttributeRule rule;
        rule.IsRequired = NameOf(pattern) != "optional";
        xmlNodePtr attribute = rule.IsRequired ? pattern : xmlFirstElementChild(pattern);
        if (NameOf(attribute) != "attribute")
            Refuse(attribute);
        rule.Name = AttributeOf(attribute, "name");
        if (xmlNodePtr value = xmlFirstElementChild(attribute))
            rule.Value = BuildValue(Resolve(value));
        return rule;
    }

    static ValueRule BuildValue(xmlNodePtr pattern)
    {
        const std::string form = NameOf(pattern);
        if (form == "value")
            return ValueRule({TextOf(pattern)});
        if (form == "choice") {
            std::vector<std::string> words;
            for (xmlNodePtr value = xmlFirstElementChild(pattern); value;
                 value = xmlNextElementSibling(value)) {
                if (NameOf(value) != "value")
                    Refuse(value);
                words.push_back(TextOf(value));
            }
            return ValueRule(std::move(words));
        }
        if (form != "data")
            Refuse(pattern);
        std::string meaning;
        std::string regularExpression;
        for (xmlNodePtr part = xmlFirstElementChild(pattern); part;
             part = xmlNextElementSibling(part)) {
            if (NameOf(part) == "documentation")
                meaning = TextOf(part);
            else if (NameOf(part) == "param" && AttributeOf(part, "name") == "pattern")
                regularExpression = TextOf(part);
            else
                Refuse(part);
        }
        return {regularExpression, AttributeOf(pattern, "type") == "int", std::move(meaning)};
    }

    std::map<std::string, xmlNodePtr> _definitions; ///< "" is the start
};

/// Takes the regular expressions out of a schema.
void RemovePatterns(xmlNodePtr parent)
{
    for (xmlNodePtr child = xmlFirstElementChild(parent); child;) {
        const xmlNodePtr next = xmlNextElementSibling(child);
        if (NameOf(child) == "param") {
            xmlUnlinkNode(child);
            xmlFreeNode(child);
        } else {
            RemovePatterns(child);
        }
        child = next;
    }
}

} // namespace

const MaterialSchema& MaterialSchema::Get()
{
    static const MaterialSchema schema;
    return schema;
}

MaterialSchema::MaterialSchema() : _grammar(nullptr, xmlRelaxNGFree)
{
    const XmlDocument document(
        xmlReadMemory(Text, static_cast<int>(std::strlen(Text)), nullptr, nullptr, XML_PARSE_NONET),
        xmlFreeDoc);
    if (!document)
        throw std::bad_alloc();
    const RuleBuilder builder(xmlDocGetRootElement(document.get()));
    _elements = builder.BuildElements();
    _root = &_elements.at(builder.RootName());

    // The rules match every value already, with the same engine. libxml2 would compile the
    // expression anew for each value, which takes longer than all the rest of reading.
    RemovePatterns(xmlDocGetRootElement(document.get()));
    const std::unique_ptr<xmlRelaxNGParserCtxt, decltype(&xmlRelaxNGFreeParserCtxt)> parser(
        xmlRelaxNGNewDocParserCtxt(document.get()), xmlRelaxNGFreeParserCtxt);
    if (!parser)
        throw std::bad_alloc();
    _grammar.reset(xmlRelaxNGParse(parser.get()));
    if (!_grammar)
        throw std::logic_error("the schema of material documents is no schema");
}

} // namespace Mox::Host
