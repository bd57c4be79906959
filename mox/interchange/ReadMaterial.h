#pragma once

#include "mox/document/MaterialDocument.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Whether a file is a MaterialX document: by its extension ".mtlx" or its root element.
bool IsMaterialX(const std::filesystem::path& file, std::string_view text);

/// Reads a material from a file: a material document, or a MaterialX document, from which a
/// document is made.
/// @param problems takes what is wrong with the file, and of MaterialX what is not carried over as
///        it is, as warnings of rules "interchange-..."
/// @returns what could be understood; only without new errors in problems is that all of it
MaterialDocument ReadMaterial(const std::filesystem::path& file, ProblemList& problems);

/// The same for callers that stop at the first error.
/// @throws HostError with it
MaterialDocument ReadMaterial(const std::filesystem::path& file);

/// The same for a text in memory.
/// @param file as it is named in messages
MaterialDocument ParseMaterial(const std::string& file, std::string_view text,
                               ProblemList& problems);

/// Reads a MaterialX document in memory.
/// @param file as it is named in messages
MaterialDocument ParseMaterialX(const std::string& file, std::string_view text,
                                ProblemList& problems);

} // namespace Mox::Host
