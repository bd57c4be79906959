#pragma once

#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

#include <filesystem>

namespace Mox::Bench {

/// What remains loaded between materials.
struct Workshop
{
    /// Loads the plug-ins and the environment from the build tree.
    Workshop();

    Host::PluginSet Plugins;
    Host::Environment Environment;
};

/// The language of the programs that the pipeline writes.
enum class Language
{
    Cg,
    Essl, ///< including the reflection
};

/// Processor time in seconds for each stage of processing one material.
struct PipelineTimes
{
    double Read = 0;    ///< file to records
    double Load = 0;    ///< records to nodes, properties, ports and edges
    double Resolve = 0; ///< component counts and precisions
    double Write = 0;   ///< every node's shader, the final pass, and the source of both programs
    double Spell = 0;   ///< translation of both programs into a language other than Cg
    double Free = 0;    ///< freeing everything
    double Total() const { return Read + Load + Resolve + Write + Spell + Free; }
};

/// Runs the whole pipeline for one material, from its document to programs.
PipelineTimes RunPipeline(const Workshop& workshop, const std::filesystem::path& document,
                          Language language);

} // namespace Mox::Bench
