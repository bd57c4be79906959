#pragma once

#include "LoadPlugins.h"

#include <CLI/CLI.hpp>

namespace Mox::Tool {

/// Exit statuses of the program.
constexpr int failureStatus = 1;  ///< the input is bad
constexpr int usageStatus = 2;    ///< the command line is bad
constexpr int signalStatus = 128; ///< plus the number of the signal that ended the work

/// Each adds one subcommand with its options; the work runs as the subcommand's callback. A
/// callback that has told its failures itself throws CLI::RuntimeError with the exit status.
void AddApplyCommand(CLI::App& program, const CommonOptions& common);
void AddBindingsCommand(CLI::App& program, const CommonOptions& common);
void AddCatalogueCommand(CLI::App& program, const CommonOptions& common);
void AddCheckCommand(CLI::App& program, const CommonOptions& common);
void AddConvertCommand(CLI::App& program, const CommonOptions& common);
void AddDiffCommand(CLI::App& program, const CommonOptions& common);
void AddEditCommand(CLI::App& program, const CommonOptions& common);
void AddExportCommand(CLI::App& program, const CommonOptions& common);
void AddFormatCommand(CLI::App& program, const CommonOptions& common);
void AddGraphCommand(CLI::App& program, const CommonOptions& common);
void AddNewCommand(CLI::App& program, const CommonOptions& common);
void AddPreviewCommand(CLI::App& program, const CommonOptions& common);

/// These two write down the command line itself, so they see all that is in it when they run.
void AddCompletionCommand(CLI::App& program);
void AddManualCommand(CLI::App& program);

} // namespace Mox::Tool
