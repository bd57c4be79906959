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

/// Returns the value of an attribute, or null.
const std::string_view* FindValue(std::span<const XmlAttribute> attributes, std::string_view name);

/// An element at its start tag. It is valid only during the call of the handler.
struct XmlElement
{
    std::string_view Name;
    std::span<const XmlAttribute> Attributes; ///< including namespace declarations
    int Line = 0;
    std::string_view Text; ///< source of the whole document
    std::size_t Begin = 0; ///< position of the start tag in Text

    /// Returns the value of an attribute, or null.
    const std::string_view* Find(std::string_view attribute) const
    {
        return FindValue(Attributes, attribute);
    }

    /// Returns the location of the start tag in a file.
    Place PlaceIn(const std::string& file) const;

    /// Returns the location of one of the attributes.
    Place PlaceOf(std::string_view attribute, const std::string& file) const;
};

} // namespace Mox::Host
