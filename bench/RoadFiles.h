#pragma once

#include "MaterialShapes.h"

#include <filesystem>

namespace Mox::Bench {

/// A folder of the user's own for files of this program; it is made when first asked for.
std::filesystem::path TemporaryFolder();

/// The document of a shape as a file in that folder; it is made when first asked for.
std::filesystem::path FileOf(Shape shape, std::size_t nodeCount);

} // namespace Mox::Bench
