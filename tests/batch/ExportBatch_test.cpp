#include "mox/batch/ExportBatch.h"
#include "mox/host/HostError.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace Mox::Host;

namespace {

/// Exports a document by what its name begins with: "bad" and "worse" fail, "odd" warns.
class NameExporter : public Exporter
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }

    ExportedMaterial Export(const std::filesystem::path& document) const override
    {
        const std::string name = document.filename().string();
        const int begun = Begun++;
        while (name.starts_with("slow") && Begun < SlowUntil && !IsOver)
            std::this_thread::yield();
        if (begun % 3 == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (name.starts_with("bad"))
            throw HostError({{}, 7, "node", {}}, "is bad");
        if (name.starts_with("worse"))
            throw std::runtime_error("came to an end");
        ExportedMaterial exported;
        exported.Texts = {"one of " + name, "two of " + name};
        exported.Inputs = {"texture"};
        if (name.starts_with("odd"))
            exported.Problems.Warn("odd", {name, 0, {}, {}}, "is odd");
        return exported;
    }

    mutable std::atomic<int> Begun = 0;
    mutable std::atomic<bool> IsOver = false;
    int SlowUntil = 0; ///< so many exports must have begun before a slow one ends

private:
    std::vector<std::string> _endings{".one", ".two"};
};

std::vector<ExportJob> JobsOf(const std::vector<std::string>& names,
                              const std::filesystem::path& folder)
{
    std::vector<ExportJob> jobs;
    for (const std::string& name : names)
        jobs.push_back({name, (folder / name).string()});
    return jobs;
}

TEST(ExportBatch, WritesTextsAndReportsInOrder)
{
    std::vector<std::string> names{"bad", "odd", "sub/worse", "sub/fine"};
    for (int i = 0; i < 200; ++i)
        names.push_back("m" + std::to_string(i));
    for (const unsigned workers : {1u, 8u, 500u}) {
        const TemporaryFolder folder;
        const NameExporter exporter;
        const ExportBatch batch(exporter, JobsOf(names, folder.Path()));
        std::vector<std::string> reported;
        std::string problems;
        batch.Run(workers, [&](const ExportJob& job, const ExportOutcome& outcome) {
            reported.push_back(job.Document);
            for (const Problem& problem : outcome.Problems.Problems())
                problems += problem.Format() + "\n";
            const bool hasFailed = outcome.Problems.HasErrors();
            EXPECT_EQ(outcome.Outputs.size(), hasFailed ? 0u : 2u);
            EXPECT_EQ(std::filesystem::exists(job.Output + ".one"), !hasFailed);
            if (!hasFailed) {
                EXPECT_EQ(outcome.Inputs,
                          (std::vector<std::filesystem::path>{job.Document, "texture"}));
            }
        });
        EXPECT_EQ(reported, names);
        EXPECT_EQ(problems, "bad:7: node \"node\": is bad\nodd: is odd\n"
                            "sub/worse: came to an end\n");
        EXPECT_EQ(folder.Read("sub/fine.two"), "two of fine");
    }
}

/// A failure to write counts like any other failure of the one material.
TEST(ExportBatch, OneOutputThatCannotBeWritten)
{
    const TemporaryFolder folder;
    folder.Write("a.two/in the way");
    const NameExporter exporter;
    std::string failures;
    ExportBatch(exporter, JobsOf({"a", "b"}, folder.Path()))
        .Run(2, [&](const ExportJob& job, const ExportOutcome& outcome) {
            failures += outcome.Problems.HasErrors() ? job.Document : "";
        });
    EXPECT_EQ(failures, "a");
    EXPECT_EQ(folder.Read("b.two"), "two of b");
}

TEST(ExportBatch, RefusesTwoWritersOfOneFile)
{
    const NameExporter exporter;
    try {
        const ExportBatch batch(exporter, {{"a.xml", "out/a"}, {"b", "o/b"}, {"x/a", "out/./a"}});
        FAIL();
    } catch (const HostError& error) {
        EXPECT_STREQ(error.what(), "out/a.one: would be written for both a.xml and x/a");
    }
    EXPECT_EQ(exporter.Begun, 0);
}

TEST(ExportBatch, StopsBetweenMaterials)
{
    const TemporaryFolder folder;
    const NameExporter exporter;
    const ExportBatch batch(exporter, JobsOf(std::vector<std::string>(1, "a"), folder.Path()));
    std::stop_source stopped;
    stopped.request_stop();
    batch.Run(
        3, [](const ExportJob&, const ExportOutcome&) { FAIL(); }, stopped.get_token());
    EXPECT_EQ(exporter.Begun, 0);

    std::vector<std::string> names;
    for (int i = 0; i < 2000; ++i)
        names.push_back("m" + std::to_string(i));
    const ExportBatch many(exporter, JobsOf(names, folder.Path()));
    std::stop_source source;
    std::size_t reported = 0;
    many.Run(
        4,
        [&](const ExportJob& job, const ExportOutcome&) {
            EXPECT_EQ(job.Document, names[reported]);
            if (++reported == 10)
                source.request_stop();
        },
        source.get_token());
    EXPECT_EQ(static_cast<int>(reported), exporter.Begun);
    EXPECT_LT(reported, 1000u);
}

TEST(ExportBatch, FailingReportEndsTheRun)
{
    const TemporaryFolder folder;
    const NameExporter exporter;
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i)
        names.push_back("m" + std::to_string(i));
    const ExportBatch batch(exporter, JobsOf(names, folder.Path()));
    EXPECT_THROW(
        batch.Run(4, [](const ExportJob&, const ExportOutcome&) { throw std::bad_alloc(); }),
        std::bad_alloc);
    EXPECT_LT(exporter.Begun, 1000);
}

/// While the first material takes its time the others do not run far ahead, so what waits for its
/// report stays small.
TEST(ExportBatch, WaitsForASlowMaterial)
{
    const TemporaryFolder folder;
    NameExporter exporter;
    exporter.SlowUntil = 600;
    std::vector<std::string> names{"slow"};
    for (int i = 1; i < 600; ++i)
        names.push_back("m" + std::to_string(i));
    const ExportBatch batch(exporter, JobsOf(names, folder.Path()));
    std::jthread watcher([&] {
        int seen = -1;
        while (seen != exporter.Begun) { // until nothing goes on
            seen = exporter.Begun;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        EXPECT_LT(seen, 300);
        exporter.IsOver = true;
    });
    std::size_t reported = 0;
    batch.Run(4, [&](const ExportJob&, const ExportOutcome&) { ++reported; });
    EXPECT_EQ(reported, names.size());
}

} // namespace
