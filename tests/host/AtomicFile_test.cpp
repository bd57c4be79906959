#include "mox/host/AtomicFile.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace Mox::Host;

namespace {

std::string WriteFailure(const std::filesystem::path& file, const std::string& text = "new")
{
    return HostFailureOf([&] { WriteIfChanged(file, text); });
}

TEST(AtomicFile, AppearsWithItsCommitOnly)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("file", "old");
    {
        AtomicFile output(file);
        output.Write("ne");
        output.Write("w");
        EXPECT_EQ(folder.Read("file"), "old");
        EXPECT_EQ(folder.Count(), 2);
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

/// A limit on the size of files stands for a disk that gets full on the way.
TEST(AtomicFile, FullDiskLeavesTheOldFile)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("file", "old");
    rlimit old = {};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small = {4096, old.rlim_max};
    const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string failure = WriteFailure(file, std::string(10000, 'x'));
    setrlimit(RLIMIT_FSIZE, &old);
    signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(failure, file.string() + ": cannot be written: File too large");
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_EQ(folder.Count(), 1);
}

} // namespace
