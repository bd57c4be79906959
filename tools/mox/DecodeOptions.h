#pragma once

#include "mox/decode/DecodedFile.h"

#include <CLI/CLI.hpp>

namespace Mox::Tool {

/// Adds the options that set the limits of textures and meshes.
/// @param limits must live as long as the command
void AddDecodeOptions(CLI::App& command, Host::DecodeLimits& limits);

} // namespace Mox::Tool
