#pragma once

#include "mox/document/Catalogue.h"
#include "mox/nodefile/NodeFiles.h"

#include <string>
#include <vector>

namespace Mox::Tool {

/// The catalogue for people: an overview with a line for each type, then each type by itself.
/// @param files have help of the types and ranges of their properties
std::string FormatCatalogueAsTable(const std::vector<Host::CatalogueEntry>& entries,
                                   const Host::NodeFiles& files);

} // namespace Mox::Tool
