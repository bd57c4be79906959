#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginNode.h"

#include <string>

namespace Mox::Host {

/// The properties of a node that hold its upper left corner in an editor, in pixels.
constexpr const char* positionX = "PositionX";
constexpr const char* positionY = "PositionY";

/// Farther from the origin, floats are coarser than pixels.
constexpr float farthestPosition = 1e6f;

/// Properties that the host alone keeps on a node: "BindingIndex", "PositionX" and "PositionY". No
/// class builds its ports by them.
bool IsHostValue(const std::string& property);

/// Whether two records mean the same node but for the host's own values.
bool AreSameButForHostValues(const DocumentNode& left, const DocumentNode& right);

/// Gives a node the host's own values of another one of its type.
void CopyHostValues(const PluginNode& from, const PluginNode& to) noexcept;

} // namespace Mox::Host
