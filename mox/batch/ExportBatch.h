#pragma once

#include "mox/batch/Exporter.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace Mox::Host {

/// Where the texts of a batch lie.
enum class ExportLayout
{
    ByMaterial, ///< each material has its own
    ByContent,  ///< equal programs lie once, in programFolder beside the outputs, named after their
                ///< content; a material has a file that names them
};

struct ExportJob
{
    std::string Document;
    std::string Output; ///< path of its texts, up to their endings
};

/// The rule of problems with outputs.
constexpr ProblemRule exportRule = "export";

/// Folder below the output folder in which programs by content lie.
constexpr const char* programFolder = "programs";

/// A file as an export left it, whether it had to be written or not.
struct ExportedFile
{
    std::filesystem::path File;
    std::string Hash; ///< of its bytes alone, see HashContent
};

class OrderedOutcomes;

/// How the export of one material went. The texts themselves are on the disk.
struct ExportOutcome
{
    ProblemList Problems;
    std::vector<ExportedFile> Outputs;         ///< what stands on the disk; none after an error
    std::vector<std::filesystem::path> Inputs; ///< the document, and whatever else they hang on
    std::string Content; ///< name of the texts after their content; equal for equal programs
};

/// Exports many materials on several threads. A material that fails stops no other one, and what is
/// kept in memory does not grow with the number of materials.
class ExportBatch
{
public:
    /// Called for one job after another, in their order, on the thread that called Run.
    using Report = std::function<void(const ExportJob&, const ExportOutcome&)>;

    /// @param exporter must live as long as this object
    /// @param folder the output folder, into which programs by content go
    /// @throws HostError if two jobs would write one file
    ExportBatch(const Exporter& exporter, std::vector<ExportJob> jobs,
                ExportLayout layout = ExportLayout::ByMaterial, std::filesystem::path folder = {});

    std::size_t Size() const { return _jobs.size(); }

    /// Exports everything and writes each material whose texts differ from what their files hold; a
    /// loss of power may cost what FlushFolder has not brought to the disk. A material for which
    /// the memory is not enough fails like any other.
    ///
    /// A stop, or an exception of report, ends the run early: of the materials that have begun only
    /// those that are being written are finished and reported. The others leave nothing.
    /// @param workers number of threads, at least 1; fewer if the machine has no room for them
    /// @param whenStopped is called after a stop and the last report. The exporter may still be
    ///        working then, and Run does not return before it is done. A program that cannot wait
    ///        so long can end itself here.
    /// @throws HostError if no thread can be started
    /// @throws the first exception of report, at the end of the run
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
