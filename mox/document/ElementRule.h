#pragma once

#include "mox/xml/XmlElement.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// What an attribute may hold: one of some words, what a predicate accepts, or any text.
struct ValueRule
{
    bool Accepts(std::string_view value) const;

    /// What the attribute may hold, as a phrase that follows "expected".
    std::string Expected() const;

    std::span<const std::string_view> Words = {}; ///< the only values, if there are any
    bool (*IsValid)(std::string_view) = nullptr;  ///< null for any text
    std::string_view Meaning = "a text";          ///< of what IsValid accepts
};

struct AttributeRule
{
    std::string_view Name;
    bool IsRequired = false;
    ValueRule Value = {};
};

/// What is wrong with the attributes of an element.
struct AttributeProblem
{
    std::string Attribute; ///< empty if it is missing
    std::string Message;
};

/// What an element of a document may have. The rules are constants that refer to each other.
struct ElementRule
{
    struct Child
    {
        const ElementRule* Rule = nullptr;
        bool IsRepeated = false;
    };

    /// Further attributes of elements whose selector is a certain word.
    struct Variant
    {
        std::string_view Word;
        std::span<const AttributeRule> Attributes = {};
    };

    std::vector<AttributeProblem> Check(std::span<const XmlAttribute> values) const;

    /// The position of an attribute in the canonical order; nothing for an attribute that no such
    /// element has.
    std::optional<std::size_t> OrderOf(std::string_view attribute) const;

    /// The children that may follow, as a phrase that follows "expected".
    /// @param first index of the first child that may still come
    std::string ExpectedChildren(std::size_t first) const;

    std::string_view Name;
    std::span<const AttributeRule> Attributes = {};
    std::span<const Child> Children = {}; ///< in the order in which they may come; none is required
    std::string_view Selector = {}; ///< a required attribute, or empty if there are no variants
    std::span<const Variant> Variants = {};

private:
    const Variant* FindVariant(std::string_view word) const;
    std::string ExpectedWords() const;
    std::string DescribeUnexpected(std::string_view attribute, const Variant* variant) const;
};

} // namespace Mox::Host
