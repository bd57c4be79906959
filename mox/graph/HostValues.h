#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginNode.h"

#include <string>

namespace Mox::Host {

/// The properties of a node that store the position of its upper-left corner in an editor, in
/// pixels.
constexpr const char* positionX = "PositionX";
constexpr const char* positionY = "PositionY";

/// Beyond this distance from the origin, floats are coarser than pixels.
constexpr float farthestPosition = 1e6f;

/// Whether only the host uses a property: "BindingIndex", "PositionX" or "PositionY". No class uses
/// these to build its ports.
bool IsHostValue(const std::string& property);

/// Whether two records describe the same node apart from the host's own values.
bool AreSameButForHostValues(const DocumentNode& left, const DocumentNode& right);

/// Copies the host's own values between nodes of the same type.
void CopyHostValues(const PluginNode& from, const PluginNode& to) noexcept;

} // namespace Mox::Host
