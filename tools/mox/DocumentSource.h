#pragma once

#include "mox/batch/MaterialFiles.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Mox::Tool {

/// The documents on a command line: files, and "-" for standard input, which can be read only once.
/// A document from standard input has no folder, so its textures are looked up in the current
/// folder.

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

/// Reads the source of a document that the command writes back.
/// @throws HostError if it cannot be read, or is a MaterialX document
std::string ReadReplacedSource(const std::string& file);

/// @param material name of the material to read from a MaterialX document with several materials;
///        if empty, the first one
Host::MaterialDocument ReadDocument(const std::string& file, Host::ProblemList& problems,
                                    const std::string& material = {});

/// @throws HostError with the first error
Host::MaterialDocument ReadDocument(const std::string& file);

/// Calls Host::FindMaterials and puts standard input first.
/// @param formats of the files of folders
/// @throws CLI::ValidationError if standard input is given twice
std::vector<Host::MaterialFile> FindDocuments(const std::vector<std::string>& files,
                                              unsigned workers,
                                              Host::FoundFormats formats = Host::FoundFormats::All);

/// For commands that read two documents.
/// @throws CLI::ValidationError if both are standard input
void RequireOneStandardInput(const std::string& first, const std::string& second);

/// For commands that replace a document and have the option --force.
/// @throws HostError if replacing the file would affect more than its content: it is read-only or
///         has other hard links
void RequireReplaceable(const std::string& file);

/// Formats a problem for the program's output, as one line without a newline.
std::string FormatMessage(const Host::Problem& problem);

/// Prints the messages of problems to standard error.
void PrintProblems(const Host::ProblemList& problems);

} // namespace Mox::Tool
