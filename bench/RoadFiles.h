#pragma once

#include "MaterialShapes.h"

#include <filesystem>

namespace Mox::Bench {

/// The document of a shape as a file in the temporary folder; it is made when first asked for.
std::filesystem::path FileOf(Shape shape, std::size_t nodeCount);

} // namespace Mox::Bench
