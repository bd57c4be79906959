#pragma once

#include "mox/host/Problem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// An element of an XML document that is small enough to fit in memory.
struct XmlTree
{
    struct Attribute
    {
        std::string Name; ///< with its prefix, if it has one
        std::string Value;
    };

    /// Returns the value of an attribute, or null.
    const std::string* Find(std::string_view attribute) const;

    /// Returns the value of an attribute, or an empty string if it is missing.
    std::string Get(std::string_view attribute) const;

    std::string Name;                  ///< with its prefix, if it has one
    std::vector<Attribute> Attributes; ///< including namespace declarations
    std::vector<XmlTree> Children;
    std::string Text; ///< character data directly in the element
    Place Where;      ///< location of the start tag
    Place WhereText;  ///< location of the first character of Text that is not a space; line 0 if
                      ///< all are spaces
};

/// Reads an XML document without its comments and processing instructions. A document that
/// XmlParser rejects is an error.
/// @returns the root element
/// @throws HostError if the file cannot be read or is not a well-formed document
XmlTree ReadXmlTree(const std::filesystem::path& file);

/// Does the same for a document in memory.
/// @param file the file name for messages
XmlTree ParseXmlTree(const std::string& file, std::string_view text);

/// Does the same for callers that need the rule of the error.
/// @param problems receives the errors
/// @returns nothing if the document is not well-formed or is rejected
std::optional<XmlTree> ParseXmlTree(const std::string& file, std::string_view text,
                                    ProblemList& problems);

/// Returns whether the root element of an XML file could have this name: it has the name, or the
/// file cannot be read or is not well-formed before the root element. It reads only up to the
/// root's start tag, and accepts documents that XmlParser rejects, such as those in other
/// encodings, so that files of other programs are recognised.
bool MayHaveRoot(const std::string& file, std::string_view name) noexcept;

} // namespace Mox::Host
