#include "mox/server/MessageFrame.h"

#include <cstddef>
#include <utility>

namespace Mox::Host {

namespace {

constexpr std::size_t lengthSize = 4;

} // namespace

MessageFrame MakeFrame(std::string json, const std::vector<std::uint8_t>& bytes)
{
    if (bytes.empty())
        return {std::move(json), false};
    std::string content;
    content.reserve(lengthSize + json.size() + bytes.size());
    for (std::size_t i = 0; i < lengthSize; ++i)
        content += static_cast<char>(json.size() >> 8 * i);
    content += json;
    content.append(bytes.begin(), bytes.end());
    return {std::move(content), true};
}

std::optional<BinaryParts> SplitBinary(std::string_view content)
{
    if (content.size() < lengthSize)
        return std::nullopt;
    std::size_t length = 0;
    for (std::size_t i = 0; i < lengthSize; ++i)
        length |= std::size_t(static_cast<unsigned char>(content[i])) << 8 * i;
    content.remove_prefix(lengthSize);
    if (length > content.size())
        return std::nullopt;
    return BinaryParts{content.substr(0, length), content.substr(length)};
}

} // namespace Mox::Host
