#pragma once

#include "mox/program/Environment.h"

#include <CLI/CLI.hpp>

#include <string>

namespace Mox::Tool {

/// Adds the option that selects a different environment.
void AddEnvironmentOption(CLI::App& command, std::string& folder);

/// Loads the environment from a folder, or the program's own environment if none is specified.
/// @throws Host::HostError as Host::ReadEnvironment does
Host::Environment LoadEnvironment(const std::string& folder);

} // namespace Mox::Tool
