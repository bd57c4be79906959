#include "mox/host/AtomicFile.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <iostream>
#include <new>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Mox::Host;

namespace {

TEST(AtomicFile, AppearsWithItsCommitOnly)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("file", "old");
    {
        AtomicFile output(file);
        output.Write("ne");
        output.Write("w");
        EXPECT_EQ(folder.Read("file"), "old");
        EXPECT_EQ(folder.Count(), 1);
    }
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Count(), 1);
    AtomicFile output(file);
    output.Write("new");
    output.Commit();
    EXPECT_EQ(folder.Read("file"), "new");
    EXPECT_EQ(folder.Count(), 1);
}

TEST(AtomicFile, KeepsPermissionsAndLinks)
{
    const TemporaryFolder folder;
    const auto modeOf = [&](const char* name) {
        struct stat status = {};
        stat((folder.Path() / name).c_str(), &status);
        return status.st_mode & 07777;
    };
    const auto file = folder.Write("file", "old");
    chmod(file.c_str(), 0640);
    std::filesystem::create_symlink("file", folder.Path() / "link");
    EXPECT_TRUE(WriteIfChanged(folder.Path() / "link", "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path() / "link"));
    EXPECT_EQ(folder.Read("file"), "new");
    EXPECT_EQ(modeOf("file"), 0640u);
    std::filesystem::create_symlink("nothing", folder.Path() / "dangling");
    EXPECT_TRUE(WriteIfChanged(folder.Path() / "dangling", "new"));
    EXPECT_EQ(folder.Read("nothing"), "new");
    std::filesystem::create_symlink("circle", folder.Path() / "circle");
    EXPECT_THROW(WriteIfChanged(folder.Path() / "circle", "new"), HostError);

    const mode_t mask = umask(027);
    WriteIfChanged(folder.Path() / "fresh", "new");
    umask(mask);
    EXPECT_EQ(modeOf("fresh"), 0640u);
}

TEST(AtomicFile, LeavesWhatIsTheSame)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("file", "same");
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(file, longAgo);
    EXPECT_FALSE(WriteIfChanged(file, "same"));
    EXPECT_EQ(std::filesystem::last_write_time(file), longAgo);
    EXPECT_TRUE(WriteIfChanged(file, "sane"));
    EXPECT_GT(std::filesystem::last_write_time(file), longAgo);
}

/// A limit on file size simulates a disk that fills up while writing. Files that belong together
/// all keep their old content.
TEST(AtomicFile, FullDiskLeavesTheOldFiles)
{
    const TemporaryFolder folder;
    const auto small = folder.Write("small", "old");
    const auto file = folder.Write("file", "old");
    rlimit old = {};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit limit = {4096, old.rlim_max};
    const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    const std::string large(10000, 'x');
    const std::string failure = HostFailureOf([&] {
        WriteTogether({{small, "new"}, {file, large}});
    });
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(failure, file.string() + ": cannot be written: File too large");
    EXPECT_EQ(folder.Read("small"), "old");
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Count(), 2);
}

/// If several processes write the same files at the same time, all files come from one of them.
TEST(AtomicFile, FilesThatBelongTogetherAreOfOneProcess)
{
    const TemporaryFolder folder;
    constexpr int processes = 3;
    constexpr int rounds = 100;
    constexpr int files = 12;
    const auto nameOf = [](int round, int file) {
        return std::to_string(round) + "-" + std::to_string(file);
    };
    // In shared memory, so that the processes start each round together.
    auto* begun = new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0);
    const auto writeAll = [&](const std::string& text) {
        for (int round = 0; round < rounds; ++round) {
            std::vector<FileContent> contents(files);
            for (int file = 0; file < files; ++file)
                contents[file] = {folder.Path() / nameOf(round, file), text};
            ++*begun;
            while (*begun < processes * (round + 1))
                std::this_thread::yield();
            WriteTogether(contents);
        }
    };
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            const std::string failure = HostFailureOf([&] { writeAll(std::to_string(i)); });
            *begun += processes * rounds; // releases processes that are waiting
            std::cerr << failure << "\n";
            _exit(failure == "no failure" ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (int round = 0; round < rounds; ++round) {
        for (int file = 1; file < files; ++file)
            EXPECT_EQ(folder.Read(nameOf(round, file)), folder.Read(nameOf(round, 0))) << round;
    }
}

/// Once cleaning up has begun, no file appears any more, because the process is about to end.
TEST(AtomicFile, EndCleansUp)
{
    const TemporaryFolder folder;
    const auto end = [&] {
        const EndCleanup first([&] { folder.Write("first"); });
        const EndCleanup second([&] { EXPECT_EQ(folder.Count(), 1); });
        {
            const EndCleanup forgotten([&] { folder.Write("forgotten"); });
        }
        AtomicFile output(folder.Write("file", "old"));
        output.Write("new");
        CleanUpForEnd();
        const std::thread commit([&] { output.Commit(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        _exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "first"));
    EXPECT_EQ(folder.Count(), 2);
}

} // namespace
