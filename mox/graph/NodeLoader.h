#pragma once

#include "mox/authoring/GuiProperty.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphView.h"
#include "mox/host/Problem.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <optional>
#include <set>
#include <string>

namespace Mox::Host {

/// Finds the node that an id means: nothing if there is none, an empty handle if references to it
/// are left out without a word.
using NodeLookUp =
    std::function<std::optional<boost::shared_ptr<Materials::GuiNode>>(const std::string& id)>;

/// Loads the stored properties of a record into the object of a node; ports are left to the caller.
/// What does not fit is reported and left out, and properties that the type does not know are
/// warned of.
/// @returns the names of the properties that were left out
std::set<std::string> LoadRecord(const DocumentNode& record, const GraphNode& node,
                                 const NodeLookUp& lookUp, ProblemList& problems);

/// Gives a property a value as documents have it. What is wrong is reported.
/// @returns whether the value was taken; if not, the property is as before
bool SetFromDocument(Materials::GuiProperty& property, const DocumentProperty& value,
                     const NodeLookUp& lookUp, const Place& where, ProblemList& problems);

} // namespace Mox::Host
