#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// A message as it is sent.
struct MessageFrame
{
    std::string Content;
    bool IsBinary = false;
};

/// @param json whole message
/// @param bytes sent along; without any the message is a text message
MessageFrame MakeFrame(std::string json, const std::vector<std::uint8_t>& bytes = {});

/// The parts of a binary message.
struct BinaryParts
{
    std::string_view Json;
    std::string_view Bytes;
};

/// @returns nothing if the content is shorter than its length field says
std::optional<BinaryParts> SplitBinary(std::string_view content);

} // namespace Mox::Host
