#include "mox/document/MaterialSchema.h"

#include "mox/Text.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

using XmlDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

std::string_view ViewOf(const xmlChar* text)
{
    return text ? reinterpret_cast<const char*>(text) : std::string_view();
}

std::string_view NameOf(xmlNodePtr node)
{
    return ViewOf(node->name);
}

/// The schema uses a form that has no rule.
[[noreturn]] void Refuse(xmlNodePtr node)
{
    throw std::logic_error(
        Compose("line ", xmlGetLineNo(node), " of the schema: no rule for <", NameOf(node), ">"));
}

/// The text that is all that an attribute or an element has in it.
std::string_view ContentOf(xmlNodePtr node, xmlNodePtr content)
{
    if (!content)
        return {};
    if (content->type != XML_TEXT_NODE || content->next)
        Refuse(node);
    return ViewOf(content->content);
}

std::string_view TextOf(xmlNodePtr node)
{
    return ContentOf(node, node->children);
}

/// The elements directly in another one, in a range.
class Children
{
public:
    explicit Children(xmlNodePtr parent) : _first(xmlFirstElementChild(parent)) {}

    class Iterator
    {
    public:
        explicit Iterator(xmlNodePtr node) : _node(node) {}
        xmlNodePtr operator*() const { return _node; }
        bool operator!=(const Iterator& other) const { return _node != other._node; }
        Iterator& operator++()
        {
            _node = xmlNextElementSibling(_node);
            return *this;
        }

    private:
        xmlNodePtr _node;
    };

    Iterator begin() const { return Iterator(_first); }
    Iterator end() const { return Iterator(nullptr); }

private:
    xmlNodePtr _first;
};

std::string_view AttributeOf(xmlNodePtr node, std::string_view name)
{
    for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
        if (ViewOf(attribute->name) == name)
            return ContentOf(node, attribute->children);
    }
    return {};
}

/// What the rules know of a form of the schema. With another attribute it would mean something
/// else.
struct Form
{
    std::string_view Name;
    std::string_view Attribute; ///< the only one
    std::string_view Value;     ///< the only one that the attribute may have, or empty for any
    bool HasOneChild = false;   ///< and no more
};

constexpr Form forms[] = {
    {"grammar", "datatypeLibrary", "http://www.w3.org/2001/XMLSchema-datatypes"},
    {"start", "", "", true},
    {"define", "name", "", true},
    {"element", "name", ""},
    {"attribute", "name", ""},
    {"optional", "", "", true},
    {"zeroOrMore", "", "", true},
    {"choice", "", ""},
    {"group", "", ""},
    {"ref", "name", ""},
    {"value", "type", "string"},
    {"data", "type", ""},
    {"documentation", "", ""},
    {"param", "name", ""},
};

/// Refuses what stands in a schema and would be passed over.
void CheckForms(xmlNodePtr node)
{
    const std::string_view name = NameOf(node);
    const auto* form = std::find_if(std::begin(forms), std::end(forms),
                                    [&](const Form& known) { return known.Name == name; });
    if (form == std::end(forms))
        Refuse(node);
    const std::string_view value = AttributeOf(node, form->Attribute);
    const xmlAttr* attribute = node->properties;
    const bool isAlone = attribute && !attribute->next && !attribute->ns && !value.empty();
    if (form->Attribute.empty() ? attribute != nullptr : !isAlone)
        Refuse(node);
    if (!form->Value.empty() && value != form->Value)
        Refuse(node);
    if (form->Attribute == "name" && value.find(':') != std::string_view::npos)
        Refuse(node);
    if (form->HasOneChild && xmlChildElementCount(node) != 1)
        Refuse(node);
    for (xmlNodePtr child : Children(node))
        CheckForms(child);
}

/// Makes rules of the patterns of a schema.
class RuleBuilder
{
public:
    /// @param elements takes the rules, by the names of elements
    RuleBuilder(xmlNodePtr grammar, std::map<std::string, ElementRule>& elements)
        : _elements(elements)
    {
        CheckForms(grammar);
        for (xmlNodePtr define : Children(grammar)) {
            if (!_definitions.emplace(AttributeOf(define, "name"), xmlFirstElementChild(define))
                     .second)
                Refuse(define);
        }
    }

    /// @returns the rule of the root
    const ElementRule* Build()
    {
        // First they all get a place, as they refer to each other.
        for (const auto& [name, pattern] : _definitions) {
            if (NameOf(pattern) == "element" &&
                !_elements.emplace(std::string(AttributeOf(pattern, "name")), ElementRule()).second)
                Refuse(pattern);
        }
        for (const auto& [name, pattern] : _definitions) {
            if (NameOf(pattern) == "element")
                BuildElement(pattern);
        }
        const auto start = _definitions.find("");
        if (start == _definitions.end())
            throw std::logic_error("the schema has no start");
        return FindElement(start->second);
    }

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

    /// The element that a reference refers to.
    const ElementRule* FindElement(xmlNodePtr reference) const
    {
        const xmlNodePtr element = Resolve(reference);
        if (element == reference || NameOf(element) != "element")
            Refuse(reference);
        return &_elements.at(std::string(AttributeOf(element, "name")));
    }

    void BuildElement(xmlNodePtr element)
    {
        ElementRule& rule = _elements.at(std::string(AttributeOf(element, "name")));
        rule.Name = AttributeOf(element, "name");
        for (xmlNodePtr child : Children(element)) {
            const std::string_view form = NameOf(child);
            const bool isCounted = form == "optional" || form == "zeroOrMore";
            if (isCounted && NameOf(xmlFirstElementChild(child)) == "ref")
                AddChild(rule, child);
            else if (form == "choice")
                AddVariants(rule, child);
            else
                AddAttribute(rule.Attributes, child);
        }
    }

    void AddChild(ElementRule& rule, xmlNodePtr pattern) const
    {
        const ElementRule* added = FindElement(xmlFirstElementChild(pattern));
        for (const ElementRule::Child& child : rule.Children) {
            if (child.Rule == added)
                Refuse(pattern);
        }
        rule.Children.push_back({added, NameOf(pattern) == "zeroOrMore"});
    }

    void AddVariants(ElementRule& rule, xmlNodePtr choice) const
    {
        if (!rule.Variants.empty())
            Refuse(choice);
        for (xmlNodePtr group : Children(choice)) {
            if (NameOf(group) != "group")
                Refuse(group);
            std::vector<AttributeRule> variant;
            for (xmlNodePtr child : Children(group))
                AddAttribute(variant, child);
            if (variant.empty() || !variant.front().IsRequired ||
                variant.front().Value.Words().empty())
                Refuse(group);
            if (!rule.Variants.empty() &&
                rule.Variants.front().front().Name != variant.front().Name)
                Refuse(group);
            rule.Variants.push_back(std::move(variant));
        }
    }

    void AddAttribute(std::vector<AttributeRule>& rules, xmlNodePtr pattern) const
    {
        AttributeRule rule;
        rule.IsRequired = NameOf(pattern) != "optional";
        const xmlNodePtr attribute = rule.IsRequired ? pattern : xmlFirstElementChild(pattern);
        if (NameOf(attribute) != "attribute" || xmlChildElementCount(attribute) > 1)
            Refuse(attribute);
        rule.Name = AttributeOf(attribute, "name");
        if (xmlNodePtr value = xmlFirstElementChild(attribute))
            rule.Value = BuildValue(Resolve(value));
        rules.push_back(std::move(rule));
    }

    static ValueRule BuildValue(xmlNodePtr pattern)
    {
        const std::string_view form = NameOf(pattern);
        if (form == "value")
            return ValueRule({std::string(TextOf(pattern))});
        if (form == "choice") {
            std::vector<std::string> words;
            for (xmlNodePtr value : Children(pattern)) {
                if (NameOf(value) != "value")
                    Refuse(value);
                words.emplace_back(TextOf(value));
            }
            return ValueRule(std::move(words));
        }
        if (form == "data")
            return ValueRule(BuildType(pattern));
        Refuse(pattern);
    }

    static ValueRule::DataType BuildType(xmlNodePtr data)
    {
        ValueRule::DataType type;
        type.IsInteger = AttributeOf(data, "type") == "int";
        if (!type.IsInteger && AttributeOf(data, "type") != "string")
            Refuse(data);
        for (xmlNodePtr part : Children(data)) {
            const std::string_view text = TextOf(part);
            const std::string_view facet = AttributeOf(part, "name");
            if (NameOf(part) == "documentation")
                type.Meaning = text;
            else if (NameOf(part) == "param" && facet == "pattern" && !type.Pattern)
                type.Pattern = std::make_shared<const TextPattern>(text);
            else if (NameOf(part) == "param" && facet == "minLength" && text == "1")
                type.IsEmptyAllowed = false;
            else
                Refuse(part);
        }
        // As integers they would be compared without the blanks around them.
        if (type.IsInteger && !type.Pattern)
            Refuse(data);
        return type;
    }

    std::map<std::string, ElementRule>& _elements;
    std::map<std::string_view, xmlNodePtr> _definitions; ///< "" is the start
};

} // namespace

const MaterialSchema& MaterialSchema::Get()
{
    static const MaterialSchema schema{Text};
    return schema;
}

MaterialSchema::MaterialSchema(std::string_view text)
{
    const XmlDocument document(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr,
                                             nullptr, XML_PARSE_NONET),
                               xmlFreeDoc);
    if (!document)
        throw std::bad_alloc();
    _root = RuleBuilder(xmlDocGetRootElement(document.get()), _elements).Build();
}

} // namespace Mox::Host
