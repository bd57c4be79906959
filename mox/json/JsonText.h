#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace Mox::Host {

/// A JSON value that keeps the order of its members.
using Json = nlohmann::ordered_json;

/// The limits of a JSON document. Input that exceeds them is rejected before any value is created.
struct JsonLimits
{
    std::size_t Bytes = 64U << 20U;
    std::size_t Depth = 16;         ///< of nested arrays and objects
    std::size_t Values = 2'000'000; ///< in the whole document
    std::size_t Members = 64;       ///< per object
};

/// Parses a JSON document. The members of an object must have unique names.
/// @param source name of the input in messages, such as its file name
/// @throws HostError with line and column if the input is not JSON in UTF-8 or exceeds the limits
Json ParseJson(std::string_view text, const std::string& source, const JsonLimits& limits = {});

/// Formats JSON without spaces and newlines. Bytes that are not valid UTF-8 are replaced.
std::string FormatJson(const Json& value);

/// Formats JSON with lines indented by two spaces and a newline at the end.
std::string FormatJsonLines(const Json& value);

} // namespace Mox::Host
