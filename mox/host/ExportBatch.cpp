#include "mox/host/ExportBatch.h"

#include "mox/Text.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"

#include <libxml/parser.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr const char* exportRule = "export";

/// Brings the outcomes of several workers back into the order of the jobs. A slow job lets the
/// others run ahead no further than the window, which bounds what waits.
class OrderedOutcomes
{
public:
    OrderedOutcomes(std::size_t count, unsigned workers) : _count(count), _workers(workers) {}

    /// The next job for a worker; nothing when the worker is to end.
    std::optional<std::size_t> Take(const std::stop_token& stop)
    {
        std::unique_lock lock(_mutex);
        const bool isFree =
            _changed.wait(lock, stop, [this] { return _taken < _reported + window; });
        if (!isFree || stop.stop_requested() || _taken == _count) {
            --_workers;
            _changed.notify_all();
            return {};
        }
        return _taken++;
    }

    void Put(std::size_t job, ExportOutcome outcome)
    {
        const std::lock_guard lock(_mutex);
        _waiting.emplace(job, std::move(outcome));
        _changed.notify_all();
    }

    /// Waits for the outcome of the next job in order; nothing when no more will come.
    std::optional<ExportOutcome> Next()
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this] { return _waiting.contains(_reported) || _workers == 0; });
        auto outcome = _waiting.extract(_reported);
        if (!outcome)
            return {};
        ++_reported;
        _changed.notify_all();
        return std::move(outcome.mapped());
    }

private:
    static constexpr std::size_t window = 256;

    const std::size_t _count;
    std::mutex _mutex;
    std::condition_variable_any _changed;
    std::map<std::size_t, ExportOutcome> _waiting;
    std::size_t _taken = 0;
    std::size_t _reported = 0;
    unsigned _workers;
};

void WriteText(const std::filesystem::path& output, const std::string& text)
{
    if (output.has_parent_path())
        CreateFolder(output.parent_path());
    WriteIfChanged(output, text);
}

void ExportInto(ExportOutcome& outcome, const Exporter& exporter, const ExportJob& job)
{
    ExportedMaterial exported = exporter.Export(job.Document);
    outcome.Problems = std::move(exported.Problems);
    if (outcome.Problems.HasErrors())
        return;
    for (std::size_t i = 0; i < exported.Texts.size(); ++i) {
        const std::filesystem::path output = job.Output + exporter.Endings().at(i);
        WriteText(output, exported.Texts[i]);
        outcome.Outputs.push_back(output);
    }
    outcome.Inputs.emplace_back(job.Document);
    outcome.Inputs.insert(outcome.Inputs.end(), exported.Inputs.begin(), exported.Inputs.end());
}

ExportOutcome ExportOne(const Exporter& exporter, const ExportJob& job)
{
    ExportOutcome outcome;
    try {
        ExportInto(outcome, exporter, job);
        return outcome;
    } catch (const HostError& error) {
        Place where = error.Where;
        if (where.File.empty())
            where.File = job.Document;
        outcome.Problems.Fail(exportRule, where, error.Message);
    } catch (const std::exception& error) {
        outcome.Problems.Fail(exportRule, {job.Document, 0, {}, {}}, error.what());
    }
    outcome.Outputs.clear();
    return outcome;
}

} // namespace

ExportBatch::ExportBatch(const Exporter& exporter, std::vector<ExportJob> jobs)
    : _exporter(exporter), _jobs(std::move(jobs))
{
    std::unordered_map<std::string, const ExportJob*> writers;
    for (const ExportJob& job : _jobs) {
        for (const std::string& ending : exporter.Endings()) {
            const std::string output =
                std::filesystem::path(job.Output + ending).lexically_normal().string();
            const auto [entry, isNew] = writers.emplace(output, &job);
            if (!isNew) {
                throw HostError({output, 0, {}, {}},
                                Compose("would be written for both ", entry->second->Document,
                                        " and ", job.Document));
            }
        }
    }
}

void ExportBatch::Run(unsigned workers, const Report& report, const std::stop_token& stop) const
{
    xmlInitParser(); // only the first call is not safe on several threads
    const auto threadCount = static_cast<unsigned>(std::min<std::size_t>(workers, _jobs.size()));
    OrderedOutcomes outcomes(_jobs.size(), threadCount);
    const auto work = [&](const std::stop_token& end) {
        while (const auto job = outcomes.Take(end))
            outcomes.Put(*job, ExportOne(_exporter, _jobs[*job]));
    };
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < threadCount; ++i)
        threads.emplace_back(work);
    const std::stop_callback stopAll(stop, [&] {
        for (std::jthread& thread : threads)
            thread.request_stop();
    });
    for (std::size_t i = 0; const auto outcome = outcomes.Next(); ++i)
        report(_jobs[i], *outcome);
}

} // namespace Mox::Host
