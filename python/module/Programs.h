#pragma once

#include "Library.h"
#include "Material.h"
#include "mox/batch/OutputRecord.h"
#include "mox/host/Problem.h"

#include <string>
#include <utility>
#include <vector>

namespace Mox::Python {

/// How programs are written; corresponds to the options of mox export.
struct ProgramSettings
{
    std::vector<std::string> Targets;
    std::string Precision = "full";
    bool IsOptimised = false;
    bool IsPlain = false;
};

/// The programs of one material.
struct Program
{
    Host::ProblemList Problems;
    std::vector<std::string> Targets;
    struct File
    {
        std::string Extension;
        std::string Bytes;
        std::vector<std::string> LineNodes; ///< for each line of a source, the id of the node that
                                            ///< it comes from; empty if there is none
    };
    std::vector<File> Files;

    /// Returns the file with this extension.
    /// @throws FaultyMaterial if the material has an error
    /// @throws HostError if there is no such file
    const File& Find(const std::string& extension) const;
};

/// Compiles a material in its current state.
/// @throws HostError if a target is unknown; errors of the material become problems of the program
Program Compile(const Material& material, const ProgramSettings& settings);

/// Compiles material files on several threads. If a file cannot be read, its program has a problem
/// that reports this.
std::vector<Program> CompileMany(const Library& library, const Paths& files,
                                 const ProgramSettings& settings, std::size_t threads);

/// The file extension for a target and stage, such as ".vertex.essl".
/// @throws HostError if there is no such target
std::string ExtensionOf(const std::string& target, const std::string& stage);

/// Formats the finished shader graph of a material as text.
/// @throws FaultyMaterial if the material has an error
std::string FormatShaderGraph(const Material& material);

/// Converts a material to MaterialX 1.39 and reports anything that is not converted exactly.
/// @throws FaultyMaterial if the material has an error
std::pair<std::string, std::vector<Host::Problem>> FormatMaterialX(const Material& material);

/// The options of mox export: how programs are written, and how materials are processed.
struct ExportSettings
{
    ProgramSettings Programs;
    std::size_t Threads = 0;
    bool IsShaderGraph = false;
    bool IsByContent = false;
    bool Prunes = false;
    std::filesystem::path Depfile; ///< empty for none
    std::string DepfileTarget;
};

/// The result of an export.
struct ExportSummary
{
    std::size_t Exported = 0;
    std::size_t Failed = 0;
    std::size_t Distinct = 0; ///< number of distinct programs
    std::vector<Host::Problem> Problems;
    Paths Outputs;
    std::vector<Host::LeftOutput> Left; ///< outputs whose materials no longer exist
};

/// Exports materials to a folder as mox export does.
/// @param files and folders
/// @throws HostError if a file or folder cannot be used
ExportSummary Export(const Library& library, const Paths& files,
                     const std::filesystem::path& folder, const ExportSettings& settings);

} // namespace Mox::Python
