#include "mox/host/AtomicFile.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
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

/// A limit on the size of files stands for a disk that gets full on the way. Files that belong
/// together all stay as they were then.
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

/// Processes that write the same files at the same time leave those of one of them.
TEST(AtomicFile, FilesThatBelongTogetherAreOfOneProcess)
{
    const TemporaryFolder folder;
    constexpr int processes = 3;
    constexpr int names = 300;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            for (int name = 0; name < names; ++name) {
                const std::string text = std::to_string(i);
                const auto file = folder.Path() / std::to_string(name);
                WriteTogether({{file.string() + "a", text}, {file.string() + "b", text}});
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (int name = 0; name < names; ++name) {
        EXPECT_EQ(folder.Read(std::to_string(name) + "a"), folder.Read(std::to_string(name) + "b"))
            << name;
    }
}

/// Afterwards nothing appears any more, as the process is about to end.
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
