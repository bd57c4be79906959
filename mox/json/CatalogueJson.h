#pragma once

#include "mox/document/Catalogue.h"
#include "mox/json/JsonText.h"
#include "mox/nodefile/NodeFiles.h"

#include <vector>

namespace Mox::Host {

/// The catalogue in JSON: an array with one object per type.
/// @param files provide the help and the icons of types and the ranges of their properties
Json CatalogueToJson(const std::vector<CatalogueEntry>& entries, const NodeFiles& files);

/// The value of a property in JSON; null for a reference to a node.
Json ValueToJson(const Materials::GuiProperty& property);

} // namespace Mox::Host
