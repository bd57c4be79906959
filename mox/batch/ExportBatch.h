#pragma once

#include "mox/host/Exporter.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace Mox::Host {

/// How the output files of a batch are organised.
enum class ExportLayout
{
    ByMaterial, ///< each material has its own files
    ByContent,  ///< identical programs are stored once, in programFolder below the output folder,
                ///< named by their content; each material has a file that names them
};

struct ExportJob
{
    std::string Document;
    std::string Output; ///< path of the output files without their extensions
};

/// The problem rule for errors in writing outputs.
constexpr ProblemRule exportRule = "export";

/// Folder below the output folder that holds programs named by content.
constexpr const char* programFolder = "programs";

/// A file as an export left it, whether or not it had to be written.
struct ExportedFile
{
    std::filesystem::path File;
    std::string Hash; ///< of this file's bytes alone, see HashContent
};

class OrderedOutcomes;

/// The result of exporting one material. The outputs themselves are on disk.
struct ExportOutcome
{
    ProblemList Problems;
    std::vector<ExportedFile> Outputs;         ///< files on disk; empty after an error
    std::vector<std::filesystem::path> Inputs; ///< the document and everything else on which the
                                               ///< outputs depend
    std::string Content; ///< name derived from the content; the same for identical programs
};

/// Exports many materials on several threads. A failing material does not stop the others, and
/// memory use does not grow with the number of materials.
class ExportBatch
{
public:
    /// Called for each job in order, on the thread that called Run.
    using Report = std::function<void(const ExportJob&, const ExportOutcome&)>;

    /// @param exporter must outlive this object
    /// @param folder the output folder, which receives programs named by content
    /// @throws HostError if two jobs would write the same file
    ExportBatch(const Exporter& exporter, std::vector<ExportJob> jobs,
                ExportLayout layout = ExportLayout::ByMaterial, std::filesystem::path folder = {});

    std::size_t Size() const { return _jobs.size(); }

    /// Exports everything and writes each material whose outputs differ from the existing files. A
    /// power failure may lose files that FlushFolder has not yet flushed to disk. Running out of
    /// memory for one material is reported like any other failure.
    ///
    /// A stop request, or an exception thrown by report, ends the run early: materials that are
    /// being written are finished and reported; those still in preparation are dropped without a
    /// trace.
    /// @param workers number of threads, at least 1; fewer are used if the system cannot start as
    ///        many
    /// @param whenStopped called after a stop and the last report. The exporter may still be
    ///        working at that point, and Run returns only when it has finished. A program that
    ///        cannot wait that long may exit from this function.
    /// @throws HostError if no thread can be started
    /// @throws the first exception thrown by report, at the end of the run
    void Run(unsigned workers, const Report& report, const std::stop_token& stop = {},
             const std::function<void()>& whenStopped = {}) const;

private:
    void Work(OrderedOutcomes& outcomes) const;
    void WriteTexts(const ExportJob& job, const ExportedMaterial& exported,
                    ExportOutcome& outcome) const;
    std::vector<std::string> OutputsOf(const ExportJob& job) const;

    const Exporter& _exporter;
    std::vector<ExportJob> _jobs;
    ExportLayout _layout;
    std::filesystem::path _folder;
};

} // namespace Mox::Host
