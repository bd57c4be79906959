#pragma once

#include "mox/document/Catalogue.h"
#include "mox/nodefile/NodeFiles.h"

#include <string>
#include <vector>

namespace Mox::Tool {

/// The catalogue for programs: an array of objects, one for each type. Bytes that are not UTF-8
/// become replacement characters.
/// @param files have help of the types and ranges of their properties
std::string FormatCatalogueAsJson(const std::vector<Host::CatalogueEntry>& entries,
                                  const Host::NodeFiles& files);

/// The catalogue for people: an overview with a line for each type, then each type by itself.
/// @param files have help of the types and ranges of their properties
std::string FormatCatalogueAsTable(const std::vector<Host::CatalogueEntry>& entries,
                                   const Host::NodeFiles& files);

/// The value of a property as JSON has it; an empty reference to a node is null.
std::string FormatValueAsJson(const Materials::GuiProperty& property);

} // namespace Mox::Tool
