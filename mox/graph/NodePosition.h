#pragma once

namespace Mox::Host {

/// The properties of a node that hold its upper left corner in an editor, in pixels.
constexpr const char* positionX = "PositionX";
constexpr const char* positionY = "PositionY";

/// Farther from the origin, floats are coarser than pixels.
constexpr float farthestPosition = 1e6f;

} // namespace Mox::Host
