#pragma once

#include "mox/host/Problem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// An element of an XML document that is small enough to be held in memory as a whole.
struct XmlTree
{
    struct Attribute
    {
        std::string Name; ///< with its prefix, if it has one
        std::string Value;
    };

    /// The value of an attribute, or null.
    const std::string* Find(std::string_view attribute) const;

    /// The same, with an empty text for an attribute that is missing.
    std::string Get(std::string_view attribute) const;

    std::string Name;                  ///< with its prefix, if it has one
    std::vector<Attribute> Attributes; ///< namespace declarations too
    std::vector<XmlTree> Children;
    std::string Text; ///< all characters directly in the element
    Place Where;      ///< file and line of the start tag
    Place WhereText;  ///< of the first character of Text that is not a space; line 0 if all are
};

/// Reads an XML document. Comments and processing instructions are left out; all that an XmlParser
/// refuses is an error.
/// @returns the root element
/// @throws HostError if the file cannot be read or is not a well-formed document
XmlTree ReadXmlTree(const std::filesystem::path& file);

/// The same for a document in memory.
/// @param file as it is named in messages
XmlTree ParseXmlTree(const std::string& file, std::string_view text);

/// The same for callers that want to know by which rule it failed.
/// @param problems takes what is wrong
/// @returns nothing if the document is not well-formed or refused
std::optional<XmlTree> ParseXmlTree(const std::string& file, std::string_view text,
                                    ProblemList& problems);

/// Whether the root element of an XML file may have this name: it has it, or the file cannot be
/// read or is not well-formed before it. Reads no further than the root's start tag, and accepts
/// what an XmlParser refuses, such as other encodings, so that files of other programs are
/// recognised.
bool MayHaveRoot(const std::string& file, std::string_view name) noexcept;

} // namespace Mox::Host
