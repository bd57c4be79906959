#pragma once

#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

#include <filesystem>

namespace Mox::Bench {

/// What stays loaded from one material to the next.
struct Workshop
{
    /// Loads the plug-ins and the environment of the build tree.
    Workshop();

    Host::PluginSet Plugins;
    Host::Environment Environment;
};

/// What a road ends in.
enum class Language
{
    Cg,
    Essl, ///< with the reflection
};

/// Seconds of processor time for each stage of one material's road.
struct RoadTimes
{
    double Read = 0;    ///< the file into records
    double Load = 0;    ///< records into nodes, properties, ports and edges
    double Resolve = 0; ///< component counts and precisions
    double Write = 0;   ///< every node's shader, the final pass, both programs' text
    double Spell = 0;   ///< both programs in another language than Cg
    double Free = 0;    ///< everything
    double Total() const { return Read + Load + Resolve + Write + Spell + Free; }
};

/// Takes one material the whole way.
/// @throws std::runtime_error if it cannot be exported
RoadTimes TravelRoad(const Workshop& workshop, const std::filesystem::path& document,
                     Language language);

} // namespace Mox::Bench
