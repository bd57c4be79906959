#include "mox/batch/ExportBatch.h"

#include "mox/Text.h"
#include "mox/batch/OrderedOutcomes.h"
#include "mox/batch/StartThreads.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/ContentHash.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <exception>
#include <new>
#include <unordered_map>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Extension of the file that names a material's programs.
constexpr const char* contentEnding = ".programs";

/// Adds the exception that stopped a job to the problems of its outcome.
void AddFailure(const std::exception_ptr& failure, const ExportJob& job, ExportOutcome& outcome)
{
    outcome.Outputs.clear();
    const Place document{job.Document};
    try {
        std::rethrow_exception(failure);
    } catch (const HostError& error) {
        Place where = error.Where;
        if (where.File.empty())
            where.File = job.Document;
        outcome.Problems.Fail(exportRule, where, error.Message);
    } catch (const std::bad_alloc&) {
        outcome.Problems.Fail(exportRule, document, "there is not enough memory");
    } catch (const std::exception& error) {
        outcome.Problems.Fail(exportRule, document, error.what());
    } catch (...) {
        outcome.Problems.Fail(exportRule, document, "unknown exception");
    }
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
                throw HostError(output, Compose("would be written for both ",
                                                entry->second->Document, " and ", job.Document));
            }
        }
    }
}

/// The output files that belong to a single job.
std::vector<std::string> ExportBatch::OutputsOf(const ExportJob& job) const
{
    if (_layout == ExportLayout::ByContent)
        return {job.Output + contentEnding};
    std::vector<std::string> outputs;
    for (const std::string& ending : _exporter.Endings())
        outputs.push_back(job.Output + ending);
    return outputs;
}

void ExportBatch::WriteTexts(const ExportJob& job, const ExportedMaterial& exported,
                             ExportOutcome& outcome) const
{
    const std::vector<std::string>& endings = _exporter.Endings();
    const std::vector<std::string> own = OutputsOf(job);
    const bool isByContent = _layout == ExportLayout::ByContent;
    std::vector<FileContent> files;
    std::string names;
    for (std::size_t i = 0; i < exported.Texts.size(); ++i) {
        const std::string name = outcome.Content + endings.at(i);
        const std::filesystem::path file =
            isByContent ? _folder / programFolder / name : std::filesystem::path(own.at(i));
        files.push_back({file, exported.Texts[i]});
        names += name + "\n";
    }
    if (isByContent)
        files.push_back({own.front(), names});
    for (const FileContent& file : files) {
        if (file.File.has_parent_path())
            CreateFolder(file.File.parent_path());
    }
    WriteTogether(files);
    for (FileContent& file : files)
        outcome.Outputs.push_back(
            {std::move(file.File), HashContent({std::string(file.Bytes)}, "")});
}

/// Memory is allocated only within the two try blocks, so the thread survives running out of it.
/// The reporting thread turns exceptions into messages.
void ExportBatch::Work(OrderedOutcomes& outcomes) const
{
    while (const auto index = outcomes.Take()) {
        const ExportJob& job = _jobs[*index];
        WorkerOutcome result;
        ExportedMaterial exported;
        try {
            exported = _exporter.Export(job.Document);
            if (!exported.Problems.HasErrors())
                result.Outcome.Content = HashContent(exported.Texts, exported.Header);
        } catch (...) {
            result.Failure = std::current_exception();
        }
        if (!outcomes.BeginWriting(*index))
            continue;
        result.Outcome.Problems = std::move(exported.Problems);
        try {
            if (!result.Failure && !result.Outcome.Problems.HasErrors()) {
                exported.Inputs.emplace(exported.Inputs.begin(), job.Document);
                WriteTexts(job, exported, result.Outcome);
                result.Outcome.Inputs = std::move(exported.Inputs);
            }
        } catch (...) {
            result.Failure = std::current_exception();
        }
        outcomes.Put(*index, std::move(result));
    }
}

void ExportBatch::Run(unsigned workers, const Report& report, const std::stop_token& stop,
                      const std::function<void()>& whenStopped) const
{
    OrderedOutcomes outcomes(_jobs.size());
    const std::stop_callback stopWorkers(stop, [&] { outcomes.Stop(); });
    const std::vector<std::jthread> threads =
        StartThreads(std::min<std::size_t>(workers, _jobs.size()), [&] { Work(outcomes); });
    std::exception_ptr failure;
    std::size_t index = 0;
    while (auto result = outcomes.Next(index)) {
        try {
            if (result->Failure)
                AddFailure(result->Failure, _jobs[index], result->Outcome);
            report(_jobs[index], result->Outcome);
        } catch (...) {
            failure = failure ? failure : std::current_exception();
            outcomes.Stop();
        }
    }
    if (stop.stop_requested() && whenStopped)
        whenStopped();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace Mox::Host
