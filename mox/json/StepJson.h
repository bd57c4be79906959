#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/json/JsonCursor.h"

namespace Mox::Host {

/// The steps of a change as a JSON array.
Json StepsToJson(const GraphChange& change);

/// @throws HostError as ParseChangeJson does
GraphChange ReadSteps(const JsonCursor& array);

} // namespace Mox::Host
