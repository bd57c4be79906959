#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Mox::Tool {

/// Returns a check for an option with few values. The help lists them, and an error suggests the
/// most similar one.
CLI::Validator OneOf(std::vector<std::string> words);

} // namespace Mox::Tool
