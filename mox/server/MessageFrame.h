#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// A message in the form in which it is sent.
struct MessageFrame
{
    std::string Content;
    bool IsBinary = false;
};

/// @param json the complete message
/// @param bytes binary data to send with it; if empty, a text message is made
MessageFrame MakeFrame(std::string json, const std::vector<std::uint8_t>& bytes = {});

/// The parts of a binary message.
struct BinaryParts
{
    std::string_view Json;
    std::string_view Bytes;
};

/// @returns nothing if the content is shorter than its length field states
std::optional<BinaryParts> SplitBinary(std::string_view content);

} // namespace Mox::Host
