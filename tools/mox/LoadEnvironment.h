#pragma once

#include "mox/program/Environment.h"

#include <CLI/CLI.hpp>

#include <string>

namespace Mox::Tool {

/// Adds the option that names another environment.
void AddEnvironmentOption(CLI::App& command, std::string& folder);

/// The environment of a folder, or the one that belongs to the program if none is named.
/// @throws Host::HostError as Host::ReadEnvironment does
Host::Environment LoadEnvironment(const std::string& folder);

} // namespace Mox::Tool
