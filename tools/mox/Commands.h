#pragma once

#include <CLI/CLI.hpp>

namespace Mox::Tool {

/// Options that every command shares.
struct CommonOptions
{
    std::vector<std::string> PluginFolders; ///< searched besides the default one
};

/// Each adds one subcommand with its options; the work runs as the subcommand's callback.
void AddBindingsCommand(CLI::App& program, const CommonOptions& common);
void AddCatalogueCommand(CLI::App& program, const CommonOptions& common);
void AddExportCommand(CLI::App& program, const CommonOptions& common);
void AddNewCommand(CLI::App& program, const CommonOptions& common);
void AddPreviewCommand(CLI::App& program, const CommonOptions& common);

} // namespace Mox::Tool
