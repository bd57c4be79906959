#pragma once

#include "mox/document/MaterialDocument.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Whether a file is a MaterialX document, judging by its extension ".mtlx" or its root element.
bool IsMaterialX(const std::filesystem::path& file, std::string_view text);

/// Reads a material from a file: either a material document or a MaterialX document, which is
/// converted.
/// @param problems receives errors in the file and, for MaterialX, a warning with a rule
///        "interchange-..." for everything that is not converted exactly
/// @returns what could be read; it is complete only if problems receives no errors
MaterialDocument ReadMaterial(const std::filesystem::path& file, ProblemList& problems);

/// Like the function above, but stops at the first error.
/// @throws HostError with that error
MaterialDocument ReadMaterial(const std::filesystem::path& file);

/// Reads a material from a string in memory.
/// @param file name of the file, for messages
MaterialDocument ParseMaterial(const std::string& file, std::string_view text,
                               ProblemList& problems);

/// Reads a MaterialX document from a string in memory.
/// @param file name of the file, for messages
MaterialDocument ParseMaterialX(const std::string& file, std::string_view text,
                                ProblemList& problems);

} // namespace Mox::Host
