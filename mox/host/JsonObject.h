#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>

namespace Mox::Host {

/// Returns an empty JSON object with room for a dozen members. An object without room copies its
/// members, and everything in them, whenever it grows.
inline nlohmann::ordered_json MakeJsonObject()
{
    constexpr std::size_t room = 12;
    nlohmann::ordered_json::object_t object;
    object.reserve(room);
    return object;
}

} // namespace Mox::Host
