#include "mox/batch/ExportBatch.h"

#include "mox/Text.h"
#include "mox/batch/ContentHash.h"
#include "mox/batch/StartThreads.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <chrono>
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

/// Of the file that names a material's programs.
constexpr const char* contentEnding = ".programs";

/// Brings the outcomes of several workers back into the order of the jobs. A slow job lets the
/// others run ahead no further than the window, which bounds what waits.
class OrderedOutcomes
{
public:
    explicit OrderedOutcomes(std::size_t count) : _count(count) {}

    /// The next job for a worker; nothing when the worker is to end.
    std::optional<std::size_t> Take(const std::stop_token& stop)
    {
        std::unique_lock lock(_mutex);
        const bool isFree =
            _advanced.wait(lock, stop, [this] { return _taken < _reported + window; });
        if (!isFree || stop.stop_requested() || _taken == _count) {
            ++_ended;
            _arrived.notify_one();
            return {};
        }
        return _taken++;
    }

    void Put(std::size_t job, ExportOutcome outcome)
    {
        const std::lock_guard lock(_mutex);
        _waiting.emplace(job, std::move(outcome));
        if (_waiting.size() > window / 2)
            _arrived.notify_one();
    }

    /// Waits for the outcome of the next job in order; nothing when all workers have ended without
    /// it.
    std::optional<ExportOutcome> Next(std::size_t workers)
    {
        std::unique_lock lock(_mutex);
        const auto hasArrived = [&] { return _waiting.contains(_reported) || _ended == workers; };
        while (!_arrived.wait_for(lock, patience, hasArrived)) {
        }
        auto outcome = _waiting.extract(_reported);
        if (!outcome)
            return {};
        const bool wasFull = _taken == _reported + window;
        ++_reported;
        if (wasFull)
            _advanced.notify_all();
        return std::move(outcome.mapped());
    }

private:
    static constexpr std::size_t window = 256;
    /// Whoever reports looks by itself now and then: woken for each small job, it would take a
    /// processor from the workers all the time.
    static constexpr std::chrono::milliseconds patience{10};

    const std::size_t _count;
    std::mutex _mutex;
    std::condition_variable _arrived;      ///< very many outcomes, or the end of a worker
    std::condition_variable_any _advanced; ///< the window, which was full
    std::map<std::size_t, ExportOutcome> _waiting;
    std::size_t _taken = 0;
    std::size_t _reported = 0;
    std::size_t _ended = 0; ///< workers that have nothing more to do
};

void WriteText(const std::filesystem::path& output, const std::string& text)
{
    if (output.has_parent_path())
        CreateFolder(output.parent_path());
    // To wait for the disk after each text takes longer than to make them. One that a loss of power
    // empties is not what the next export wants to write, and so comes back.
    WriteIfChanged(output, text, Durability::Deferred);
}

} // namespace

ExportBatch::ExportBatch(const Exporter& exporter, std::vector<ExportJob> jobs, ExportLayout layout,
                         std::filesystem::path folder)
    : _exporter(exporter), _jobs(std::move(jobs)), _layout(layout), _folder(std::move(folder))
{
    std::unordered_map<std::string, const ExportJob*> writers;
    for (const ExportJob& job : _jobs) {
        for (const std::string& path : OutputsOf(job)) {
            const std::string output = std::filesystem::path(path).lexically_normal().string();
            const auto [entry, isNew] = writers.emplace(output, &job);
            if (!isNew) {
                throw HostError({output, 0, {}, {}},
                                Compose("would be written for both ", entry->second->Document,
                                        " and ", job.Document));
            }
        }
    }
}

/// The files that belong to a job alone.
std::vector<std::string> ExportBatch::OutputsOf(const ExportJob& job) const
{
    if (_layout == ExportLayout::ByContent)
        return {job.Output + contentEnding};
    std::vector<std::string> outputs;
    for (const std::string& ending : _exporter.Endings())
        outputs.push_back(job.Output + ending);
    return outputs;
}

void ExportBatch::WriteTexts(ExportOutcome& outcome, const ExportJob& job,
                             const std::vector<std::string>& texts) const
{
    const auto write = [&](const std::filesystem::path& output, const std::string& text) {
        WriteText(output, text);
        outcome.Outputs.push_back(output);
    };
    const std::vector<std::string> own = OutputsOf(job);
    if (_layout == ExportLayout::ByMaterial) {
        for (std::size_t i = 0; i < texts.size(); ++i)
            write(own.at(i), texts[i]);
        return;
    }
    const std::filesystem::path programs = _folder / "programs";
    std::string names;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string name = outcome.Content + _exporter.Endings().at(i);
        write(programs / name, texts[i]);
        names += name + "\n";
    }
    write(own.front(), names);
}

void ExportBatch::ExportInto(ExportOutcome& outcome, const ExportJob& job) const
{
    ExportedMaterial exported = _exporter.Export(job.Document);
    outcome.Problems = std::move(exported.Problems);
    if (outcome.Problems.HasErrors())
        return;
    outcome.Content = HashContent(exported.Texts);
    WriteTexts(outcome, job, exported.Texts);
    outcome.Inputs.emplace_back(job.Document);
    outcome.Inputs.insert(outcome.Inputs.end(), exported.Inputs.begin(), exported.Inputs.end());
}

ExportOutcome ExportBatch::ExportOne(const ExportJob& job) const
{
    ExportOutcome outcome;
    try {
        ExportInto(outcome, job);
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

void ExportBatch::Run(unsigned workers, const Report& report, const std::stop_token& stop) const
{
    if (stop.stop_requested())
        return;
    OrderedOutcomes outcomes(_jobs.size());
    std::vector<std::jthread> threads =
        StartThreads(std::min<std::size_t>(workers, _jobs.size()), [&](const std::stop_token& end) {
            while (const auto job = outcomes.Take(end))
                outcomes.Put(*job, ExportOne(_jobs[*job]));
        });
    const std::stop_callback stopAll(stop, [&] {
        for (std::jthread& thread : threads)
            thread.request_stop();
    });
    for (std::size_t i = 0; const auto outcome = outcomes.Next(threads.size()); ++i)
        report(_jobs[i], *outcome);
}

} // namespace Mox::Host
