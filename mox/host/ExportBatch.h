#pragma once

#include "mox/host/Exporter.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace Mox::Host {

struct ExportJob
{
    std::string Document;
    std::string Output; ///< path of its texts, up to their endings
};

/// How the export of one material went. The texts themselves are on the disk.
struct ExportOutcome
{
    ProblemList Problems;
    std::vector<std::filesystem::path> Outputs; ///< what stands on the disk; none after an error
    std::vector<std::filesystem::path> Inputs;  ///< the document, and whatever else they hang on
};

/// Exports many materials on several threads. A material that fails stops no other one, and what is
/// kept in memory does not grow with the number of materials.
class ExportBatch
{
public:
    /// Called for one job after another, in their order.
    using Report = std::function<void(const ExportJob&, const ExportOutcome&)>;

    /// exporter must live as long as this object.
    /// @throws HostError if two jobs would write one file
    ExportBatch(const Exporter& exporter, std::vector<ExportJob> jobs);

    std::size_t Size() const { return _jobs.size(); }

    /// Exports everything and writes each text that differs from what its file holds. Reports come
    /// on the calling thread, and an exception of report ends the run. A stop lets the jobs that
    /// have begun finish and report; the others are left out.
    /// @param workers number of threads, at least 1
    void Run(unsigned workers, const Report& report, const std::stop_token& stop = {}) const;

private:
    const Exporter& _exporter;
    std::vector<ExportJob> _jobs;
};

} // namespace Mox::Host
