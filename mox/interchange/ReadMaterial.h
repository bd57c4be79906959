#pragma once

#include "mox/document/MaterialDocument.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Returns whether a file is a MaterialX document, based on its extension ".mtlx" or its root
/// element.
bool IsMaterialX(const std::filesystem::path& file, std::string_view text);

/// Returns whether a MaterialX file could be read as a material: it or a file that it includes has
/// a material or a shader, or it cannot be parsed. A file of definitions for others has neither.
bool MayHoldMaterialX(const std::string& file) noexcept;

/// Reads a material from a file: either a material document, or a MaterialX document, which is
/// converted together with the files in its folder that it includes.
/// @param problems receives errors in the file and, for MaterialX, a warning with a rule
///        "interchange-..." for everything that is not converted exactly
/// @param material the name of the material to read if a MaterialX document has several; empty for
///        the first one
/// @returns the parts that could be read; complete only if problems receives no errors
MaterialDocument ReadMaterial(const std::filesystem::path& file, ProblemList& problems,
                              const std::string& material = {});

/// Does the same, but stops at the first error.
/// @throws HostError with that error
MaterialDocument ReadMaterial(const std::filesystem::path& file);

/// Reads a material from a string in memory, without the files that it includes.
/// @param file the name of the file, for messages
MaterialDocument ParseMaterial(const std::string& file, std::string_view text,
                               ProblemList& problems, const std::string& material = {});

/// Reads a MaterialX document from a string in memory.
/// @param file the name of the file, for messages
MaterialDocument ParseMaterialX(const std::string& file, std::string_view text,
                                ProblemList& problems);

/// Rejects MaterialX documents in operations that support only material documents.
/// @throws HostError that explains how to convert the file, if it is a MaterialX document
void RefuseMaterialX(const std::filesystem::path& file, std::string_view text);

} // namespace Mox::Host
