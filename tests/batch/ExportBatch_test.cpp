#include "mox/batch/ExportBatch.h"
#include "mox/host/HostError.h"
#include "tests/support/GraphText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <limits>
#include <new>
#include <thread>

using namespace Mox::Host;

namespace {

/// An exporter that behaves according to the prefix of a document's name: "bad", "worse", "big" and
/// "wild" fail, "odd" warns, and "slow" waits.
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
            throw HostError({"", 7, "node"}, "is bad");
        if (name.starts_with("worse"))
            throw std::runtime_error("came to an end");
        if (name.starts_with("big"))
            throw std::bad_alloc();
        if (name.starts_with("wild"))
            throw 5;
        ExportedMaterial exported;
        exported.Texts = {"one of " + name, "two of " + name};
        exported.Inputs = {"texture"};
        if (name.starts_with("odd"))
            exported.Problems.Warn("environment", name, "is odd");
        return exported;
    }

    mutable std::atomic<int> Begun = 0;
    mutable std::atomic<bool> IsOver = false;
    int SlowUntil = 0; ///< number of exports that must have begun before a slow one ends

private:
    std::vector<std::string> _endings{".one", ".two"};
};

/// Appends count generated names to the given ones.
std::vector<std::string> Names(std::vector<std::string> names, int count)
{
    for (int i = 0; i < count; ++i)
        names.push_back("m" + std::to_string(i));
    return names;
}

/// Exports into a temporary folder.
class ExportBatchTest : public testing::Test
{
protected:
    ExportBatch MakeBatch(const std::vector<std::string>& names) const
    {
        std::vector<ExportJob> jobs;
        jobs.reserve(names.size());
        for (const std::string& name : names)
            jobs.push_back({name, (Folder.Path() / name).string()});
        return {Exporter, jobs};
    }

    const TemporaryFolder Folder;
    NameExporter Exporter;
};

TEST_F(ExportBatchTest, WritesTextsAndReportsInOrder)
{
    const std::vector<std::string> names =
        Names({"bad", "odd", "sub/worse", "sub/fine", "big", "wild"}, 200);
    for (const unsigned workers : {1u, 8u, 500u}) {
        for (const auto& entry : std::filesystem::directory_iterator(Folder.Path()))
            std::filesystem::remove_all(entry);
        std::vector<std::string> reported;
        std::string problems;
        MakeBatch(names).Run(workers, [&](const ExportJob& job, const ExportOutcome& outcome) {
            reported.push_back(job.Document);
            problems += FormatProblems(outcome.Problems);
            const bool hasFailed = outcome.Problems.HasErrors();
            EXPECT_EQ(outcome.Outputs.size(), hasFailed ? 0u : 2u);
            EXPECT_EQ(std::filesystem::exists(job.Output + ".one"), !hasFailed);
            if (!hasFailed) {
                EXPECT_EQ(outcome.Inputs,
                          (std::vector<std::filesystem::path>{job.Document, "texture"}));
            }
        });
        EXPECT_EQ(reported, names);
        EXPECT_EQ(problems, "error export: bad:7: node \"node\": is bad\n"
                            "warning environment: odd: is odd\n"
                            "error export: sub/worse: came to an end\n"
                            "error export: big: there is not enough memory\n"
                            "error export: wild: unknown exception\n");
        EXPECT_EQ(Folder.Read("sub/fine.two"), "two of fine");
    }
}

TEST_F(ExportBatchTest, StopLeavesOutWhatHasNotBegun)
{
    std::stop_source stopped;
    stopped.request_stop();
    MakeBatch({"a"}).Run(
        3, [](const ExportJob&, const ExportOutcome&) { FAIL(); }, stopped.get_token());
    EXPECT_EQ(Exporter.Begun, 0);

    const std::vector<std::string> names = Names({}, 2000);
    std::stop_source source;
    std::size_t reported = 0;
    const auto report = [&](const ExportJob& job, const ExportOutcome&) {
        EXPECT_EQ(job.Document, names[reported]);
        if (++reported == 10)
            source.request_stop();
    };
    MakeBatch(names).Run(1, report, source.get_token());
    EXPECT_EQ(static_cast<std::size_t>(Folder.Count()), 2 * reported);
    EXPECT_LT(reported, 1000u);
}

/// A stop is reported to the caller while some materials are still unfinished. Those leave nothing
/// behind; finished ones are reported even if an earlier one is not.
TEST_F(ExportBatchTest, StopCutsMaterialsOff)
{
    Exporter.SlowUntil = std::numeric_limits<int>::max();
    std::stop_source source;
    std::jthread stopper([&] {
        while (Exporter.Begun < 4 || Folder.Count() < 4)
            std::this_thread::yield();
        source.request_stop();
    });
    std::vector<std::string> reported;
    bool isTold = false;
    MakeBatch({"slow1", "a", "b", "slow2"})
        .Run(
            4,
            [&](const ExportJob& job, const ExportOutcome&) { reported.push_back(job.Document); },
            source.get_token(),
            [&] {
                EXPECT_EQ(reported, (std::vector<std::string>{"a", "b"}));
                isTold = true;
                Exporter.IsOver = true;
            });
    EXPECT_TRUE(isTold);
    EXPECT_EQ(reported.size(), 2u);
    EXPECT_EQ(Folder.Count(), 4);
}

TEST_F(ExportBatchTest, FailingReportEndsTheRun)
{
    const auto fail = [](const ExportJob&, const ExportOutcome&) { throw std::bad_alloc(); };
    EXPECT_THROW(MakeBatch(Names({}, 1000)).Run(4, fail), std::bad_alloc);
    EXPECT_LT(Exporter.Begun, 1000);
}

/// While the first material is slow, the others do not run far ahead, so the number of outcomes
/// waiting to be reported stays small.
TEST_F(ExportBatchTest, WaitsForASlowMaterial)
{
    Exporter.SlowUntil = 600;
    std::jthread watcher([this] {
        int seen = -1;
        while (seen != Exporter.Begun) { // until no further export begins
            seen = Exporter.Begun;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        EXPECT_LT(seen, 300);
        Exporter.IsOver = true;
    });
    int reported = 0;
    const auto count = [&](const ExportJob&, const ExportOutcome&) { ++reported; };
    MakeBatch(Names({"slow"}, 599)).Run(4, count);
    EXPECT_EQ(reported, 600);
}

} // namespace
