#pragma once

#include "mox/batch/MaterialFiles.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Mox::Tool {

/// The documents that a command line names: files, and "-" for standard input, which can be read
/// once. A document from standard input has no folder, so its textures are looked up in the current
/// one.

/// Adds an argument for a document.
void AddDocument(CLI::App& command, const std::string& name, std::string& file);

/// Adds the argument FILE for documents and folders.
CLI::Option* AddDocuments(CLI::App& command, std::vector<std::string>& files);

/// Whether a document comes from standard input.
bool IsStandardInput(const std::string& file);

/// The name of a document in messages.
std::string SourceName(const std::string& file);

/// @throws HostError if it cannot be read
std::string ReadSource(const std::string& file);

/// @param material name of the one that is read, of several in a MaterialX document; the first one
/// if
///        empty
Host::MaterialDocument ReadDocument(const std::string& file, Host::ProblemList& problems,
                                    const std::string& material = {});

/// @throws HostError with the first error
Host::MaterialDocument ReadDocument(const std::string& file);

/// Host::FindMaterials, with standard input first.
/// @throws CLI::ValidationError if standard input is named twice
std::vector<Host::MaterialFile> FindDocuments(const std::vector<std::string>& files,
                                              unsigned workers);

/// For commands that read two documents.
/// @throws CLI::ValidationError if both are standard input
void RequireOneStandardInput(const std::string& first, const std::string& second);

/// For commands that replace a document and have an option --force.
/// @throws HostError if replacing it changes more than its content: it is read-only or has other
///         hard links
void RequireReplaceable(const std::string& file);

/// A problem as the program tells it, in one line without its end.
std::string FormatMessage(const Host::Problem& problem);

/// Prints these lines to standard error.
void PrintProblems(const Host::ProblemList& problems);

} // namespace Mox::Tool
