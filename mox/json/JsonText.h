#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace Mox::Host {

/// A JSON value whose members keep their order.
using Json = nlohmann::ordered_json;

/// What a JSON text may hold at most. A text beyond it is refused before a value is made of it.
struct JsonLimits
{
    std::size_t Bytes = 64U << 20U;
    std::size_t Depth = 16;         ///< of arrays and objects inside each other
    std::size_t Values = 2'000'000; ///< in the whole text
    std::size_t Members = 64;       ///< of one object
};

/// Parses a JSON text. Members of one object must have different names.
/// @param source name of the text in messages, such as that of its file
/// @throws HostError with line and column if the text is not JSON in UTF-8 or is beyond the limits
Json ParseJson(std::string_view text, const std::string& source, const JsonLimits& limits = {});

/// JSON without spaces and line ends. Bytes that are not UTF-8 are replaced.
std::string FormatJson(const Json& value);

/// JSON in lines, indented by two spaces, with a line end behind it.
std::string FormatJsonLines(const Json& value);

} // namespace Mox::Host
