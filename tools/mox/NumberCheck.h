#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>

namespace Mox::Tool {

/// Returns a check for an option that is a number. It rejects infinity and NaN.
CLI::Validator FiniteNumber();

/// Returns a check for an option that is a decimal integer. It removes leading zeros, because CLI11
/// interprets them as the prefix of an octal number, so it must be added with
/// CLI::Option::transform.
CLI::Validator IntegerIn(std::int32_t lowest, std::int32_t highest);

} // namespace Mox::Tool
