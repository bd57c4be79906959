#pragma once

#include <string>
#include <string_view>

namespace Mox::Host {

/// Whether the root element of an XML file may have this name: it has it, or the file cannot be
/// read or is not well-formed before it. Reads no further than the root's start tag, and accepts
/// what an XmlParser refuses, such as other encodings, so that files of other programs are
/// recognised.
bool MayHaveRoot(const std::string& file, std::string_view name) noexcept;

} // namespace Mox::Host
