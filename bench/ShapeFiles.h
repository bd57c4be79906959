#pragma once

#include "MaterialShapes.h"

#include <filesystem>

namespace Mox::Bench {

/// The current user's folder for temporary benchmark files, created on first use.
std::filesystem::path TemporaryFolder();

/// The file in that folder with the document of a shape, created on first use.
std::filesystem::path FileOf(Shape shape, std::size_t nodeCount);

} // namespace Mox::Bench
