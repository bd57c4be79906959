#pragma once

#include "LoadPlugins.h"

#include <CLI/CLI.hpp>

namespace Mox::Tool {

/// Exit statuses of the program.
constexpr int failureStatus = 1;  ///< the input is invalid
constexpr int usageStatus = 2;    ///< the command line is invalid
constexpr int signalStatus = 128; ///< plus the number of the signal that stopped the work

/// Each function adds one subcommand with its options and its implementation as a callback. A
/// callback that has already reported its errors throws CLI::RuntimeError with the exit status.
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

/// These two commands describe the command line itself, which is complete when they run.
void AddCompleteCommand(CLI::App& program, const CommonOptions& common);
void AddManualCommand(CLI::App& program);

} // namespace Mox::Tool
