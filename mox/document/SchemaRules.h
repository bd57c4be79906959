#pragma once

#include "mox/document/MaterialDocument.h"

#include <libxml/xmlregexp.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// What an attribute may hold: any text, one of some words, or a text of a pattern.
class ValueRule
{
public:
    /// Any text.
    ValueRule() = default;

    explicit ValueRule(std::vector<std::string> words);

    /// @param pattern a regular expression, or empty for any text
    /// @param isInteger only numbers of 32 bits are right
    /// @param meaning what the attribute says, to be put behind "expected"
    /// @throws std::logic_error if the pattern is none
    ValueRule(const std::string& pattern, bool isInteger, std::string meaning);

    bool Accepts(const std::string& value) const;

    /// What the attribute may hold, in words, to be put behind "expected".
    std::string Expected() const;

    const std::vector<std::string>& Words() const { return _words; }

private:
    std::vector<std::string> _words;
    std::shared_ptr<xmlRegexp> _pattern;
    bool _isInteger = false;
    std::string _meaning = "a text";
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
        std::string Name;
        bool IsRepeated = false;
    };

    std::string Name;
    std::vector<Child> Children; ///< in the order in which they may stand; none is required

    std::vector<AttributeRule> Attributes;

    /// Sets of attributes of which each element has one. The first attribute of a set selects it by
    /// its word.
    std::vector<std::vector<AttributeRule>> Variants;

    std::vector<AttributeProblem> Check(const std::vector<DocumentValue>& values) const;

    /// @returns null if no such element has an attribute of that name
    const AttributeRule* FindAttribute(std::string_view name) const;

    /// Place of an attribute in the order of writing.
    /// @returns the number of attributes for an unknown name
    std::size_t OrderOf(std::string_view name) const;

    /// The children that may stand behind the first ones, in words, to be put behind "expected".
    /// @param first index of the first child that may still come
    std::string ExpectedChildren(std::size_t first) const;

private:
    const std::vector<AttributeRule>* FindVariant(const std::vector<DocumentValue>& values) const;
    std::string DescribeUnexpected(const std::string& attribute,
                                   const std::vector<DocumentValue>& values,
                                   const std::vector<AttributeRule>* variant) const;

    /// The first attribute of every set.
    const std::string& SelectorName() const { return Variants.front().front().Name; }
    ValueRule Selector() const;
};

} // namespace Mox::Host
