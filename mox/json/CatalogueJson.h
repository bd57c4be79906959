#pragma once

#include "mox/document/Catalogue.h"
#include "mox/json/JsonText.h"
#include "mox/nodefile/NodeFiles.h"

#include <vector>

namespace Mox::Host {

/// The catalogue for programs: an array of objects, one for each type.
/// @param files have help of the types and ranges of their properties
Json CatalogueToJson(const std::vector<CatalogueEntry>& entries, const NodeFiles& files);

/// The value of a property as JSON has it; null for a reference to a node.
Json ValueToJson(const Materials::GuiProperty& property);

} // namespace Mox::Host
