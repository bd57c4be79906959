#pragma once

#include "mox/document/TextPattern.h"
#include "mox/xml/XmlElement.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// What an attribute may hold: any text, one of some words, or what a data type allows.
class ValueRule
{
public:
    /// The facets of a data type.
    struct DataType
    {
        bool IsInteger = false; ///< only numbers of 32 bits are right
        bool IsEmptyAllowed = true;
        std::shared_ptr<const TextPattern> Pattern; ///< null for any text
        std::string Meaning = "a text";             ///< to be put behind "expected"
    };

    /// Any text.
    ValueRule() = default;

    explicit ValueRule(std::vector<std::string> words);
    explicit ValueRule(DataType type);

    bool Accepts(std::string_view value) const;

    /// What the attribute may hold, in words, to be put behind "expected".
    std::string Expected() const;

    const std::vector<std::string>& Words() const { return _words; }

private:
    std::vector<std::string> _words;
    DataType _type;
};

struct AttributeRule
{
    std::string Name;
    bool IsRequired = true;
    ValueRule Value;
};

/// What is wrong with the attributes of an element.
struct AttributeProblem
{
    std::string Attribute; ///< empty if it is missing
    std::string Message;
};

/// What an element of a document may have.
struct ElementRule
{
    struct Child
    {
        const ElementRule* Rule = nullptr;
        bool IsRepeated = false;
    };

    std::string Name;
    std::vector<Child> Children; ///< in the order in which they may stand; none is required

    std::vector<AttributeRule> Attributes;

    /// Sets of attributes of which each element has one. The first attribute of a set selects it by
    /// its word.
    std::vector<std::vector<AttributeRule>> Variants;

    std::vector<AttributeProblem> Check(std::span<const XmlAttribute> values) const;

    /// @returns null if no such element has an attribute of that name
    const AttributeRule* FindAttribute(std::string_view name) const;

    /// Place of an attribute in the order of writing.
    /// @returns the number of attributes for an unknown name
    std::size_t OrderOf(std::string_view name) const;

    /// The children that may stand behind the first ones, in words, to be put behind "expected".
    /// @param first index of the first child that may still come
    std::string ExpectedChildren(std::size_t first) const;

private:
    /// @param selector the value of the attribute that selects a set
    const std::vector<AttributeRule>* FindVariant(std::string_view selector) const;
    std::string DescribeUnexpected(std::string_view attribute, std::string_view selector,
                                   const std::vector<AttributeRule>* variant) const;

    /// The first attribute of every set.
    const std::string& SelectorName() const { return Variants.front().front().Name; }
    ValueRule Selector() const;
};

} // namespace Mox::Host
