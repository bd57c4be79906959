#pragma once

#include "Library.h"
#include "Material.h"
#include "mox/batch/OutputRecord.h"
#include "mox/host/Problem.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Python {

/// How programs are written; the options of mox export.
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
    std::vector<std::pair<std::string, std::string>> Files; ///< bytes, by extension of the file
    std::array<std::vector<std::string>, 2> LineNodes; ///< for each line of the Cg programs, vertex
                                                       ///< before fragment, the id of its node

    /// The file of an extension.
    /// @throws FaultyMaterial if the material has an error
    /// @throws HostError if there is no such file
    const std::string& Find(const std::string& extension) const;
};

/// Compiles a material as it is now.
/// @throws HostError if a target is unknown; an error of the material is a problem of the program
Program Compile(const Material& material, const ProgramSettings& settings);

/// Compiles materials of files on several threads. A file that cannot be read is a problem of its
/// program.
std::vector<Program> CompileMany(const Library& library, const Paths& files,
                                 const ProgramSettings& settings, std::size_t threads);

/// The extension, such as ".vertex.essl", of the files of a target and stage.
/// @throws HostError if there is no such target
std::string ExtensionOf(const std::string& target, const std::string& stage);

/// The finished shader graph of a material as text.
/// @throws FaultyMaterial if the material has an error
std::string FormatShaderGraph(const Material& material);

/// A material as MaterialX 1.39, with what is not carried over as it is.
/// @throws FaultyMaterial if the material has an error
std::pair<std::string, std::vector<Host::Problem>> FormatMaterialX(const Material& material);

/// What mox export does besides writing programs.
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

/// What an export has done.
struct ExportSummary
{
    std::size_t Exported = 0;
    std::size_t Failed = 0;
    std::size_t Distinct = 0; ///< programs that differ from all others
    std::vector<Host::Problem> Problems;
    Paths Outputs;
    std::vector<Host::LeftOutput> Left; ///< outputs whose materials are gone
};

/// Exports materials to a folder as mox export does.
/// @param files and folders
/// @throws HostError if a file or folder cannot be used
ExportSummary Export(const Library& library, const Paths& files,
                     const std::filesystem::path& folder, const ExportSettings& settings);

} // namespace Mox::Python
