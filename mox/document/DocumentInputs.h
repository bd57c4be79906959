#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <filesystem>
#include <vector>

namespace Mox::Host {

/// The texture files that a document puts into its bindings, as paths from where the program runs:
/// the document names them from its own folder. They need not exist.
/// @param file that the document was read from
std::vector<std::filesystem::path> TextureFiles(const MaterialDocument& document,
                                                const std::filesystem::path& file);

/// Warns of each of these files that does not exist.
void WarnOfMissingTextures(const MaterialDocument& document, const std::filesystem::path& file,
                           ProblemList& problems);

} // namespace Mox::Host
