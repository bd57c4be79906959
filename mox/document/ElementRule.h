#pragma once

#include "mox/xml/XmlElement.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The permitted values of an attribute: one of several keywords, a value that a predicate accepts,
/// or any string.
struct ValueRule
{
    bool Accepts(std::string_view value) const;

    /// Describes the permitted values as a phrase that follows "expected".
    std::string Expected() const;

    std::span<const std::string_view> Words = {}; ///< the only permitted values, if not empty
    bool (*IsValid)(std::string_view) = nullptr;  ///< null if any string is valid
    std::string_view Meaning = "a string";        ///< describes the values that IsValid accepts
};

struct AttributeRule
{
    std::string_view Name;
    bool IsRequired = false;
    ValueRule Value = {};
};

/// An error in the attributes of an element.
struct AttributeProblem
{
    std::string Attribute; ///< empty if the attribute is missing
    std::string Message;
};

/// The attributes and children that an element of a document may have. The rules are constants that
/// refer to each other.
struct ElementRule
{
    struct Child
    {
        const ElementRule* Rule = nullptr;
        bool IsRepeated = false;
    };

    /// Additional attributes of elements whose selector has a certain value.
    struct Variant
    {
        std::string_view Word;
        std::span<const AttributeRule> Attributes = {};
    };

    std::vector<AttributeProblem> Check(std::span<const XmlAttribute> values) const;

    /// Returns the position of an attribute in the canonical order; nothing if such an element does
    /// not have the attribute.
    std::optional<std::size_t> OrderOf(std::string_view attribute) const;

    /// Describes the children that may follow, as a phrase that follows "expected".
    /// @param first index of the first child that is still allowed
    std::string ExpectedChildren(std::size_t first) const;

    std::string_view Name;
    std::span<const AttributeRule> Attributes = {};
    std::span<const Child> Children = {}; ///< in the required order; all are optional
    std::string_view Selector = {}; ///< a required attribute, or empty if there are no variants
    std::span<const Variant> Variants = {};

private:
    const Variant* FindVariant(std::string_view word) const;
    std::string ExpectedWords() const;
    std::string DescribeUnexpected(std::string_view attribute, const Variant* variant) const;
};

} // namespace Mox::Host
