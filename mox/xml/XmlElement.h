#pragma once

#include "mox/host/Problem.h"

#include <span>
#include <string>
#include <string_view>

namespace Mox::Host {

struct XmlAttribute
{
    std::string_view Name; ///< with its prefix, if it has one
    std::string_view Value;
};

/// The value of an attribute, or null.
const std::string_view* FindValue(std::span<const XmlAttribute> attributes, std::string_view name);

/// An element at its start tag. It only lives while a handler is told of it.
struct XmlElement
{
    std::string_view Name;
    std::span<const XmlAttribute> Attributes; ///< namespace declarations too
    int Line = 0;
    std::string_view Text; ///< the whole document
    std::size_t Begin = 0; ///< of the start tag in the text

    /// The value of an attribute, or null.
    const std::string_view* Find(std::string_view attribute) const
    {
        return FindValue(Attributes, attribute);
    }

    /// The place of the start tag in a file.
    Place PlaceIn(const std::string& file) const;

    /// The place of one of the attributes.
    Place PlaceOf(std::string_view attribute, const std::string& file) const;
};

} // namespace Mox::Host
