#include "tests/support/Golden.h"
#include "tests/support/RunMox.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

std::string Quote(const std::filesystem::path& path)
{
    return "'" + path.string() + "'";
}

TEST(ExportCommand, OneFailureStopsNoOtherMaterial)
{
    const TemporaryFolder folder;
    const std::string output = " -o " + Quote(folder.Path() / "out");
    for (const char* workers : {"", " -j 1", " -j 7"}) {
        const Outcome outcome = RunMox("export ../examples/two_maths.xml mox/bad/empty.xml "
                                       "nowhere.xml ../examples/flip_book.xml" +
                                       output + workers);
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_EQ(outcome.Text, "mox: mox/bad/empty.xml: the document is empty\n"
                                "mox: nowhere.xml: cannot be read: No such file or directory\n"
                                "mox: 2 exported, 2 failed, 0 warnings\n");
    }
    ExpectGolden("mox/two_maths.txt", folder.Read("out/two_maths.txt"));
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / "out/flip_book.txt"));

    const Outcome twice = RunMox("export ../examples ../examples/flip_book.xml -o out");
    EXPECT_EQ(twice.Status, 1);
    EXPECT_EQ(twice.Text, "mox: out/flip_book.txt: would be written for both "
                          "../examples/flip_book.xml and ../examples/flip_book.xml\n");
}

/// A dependency file that left out a failed material would hide what that hangs on.
TEST(ExportCommand, FailureKeepsTheOldDependencies)
{
    const TemporaryFolder folder;
    folder.Write("d", "old");
    const std::string options =
        " -o " + Quote(folder.Path()) + " --depfile " + Quote(folder.Path() / "d");
    EXPECT_EQ(RunMox("export ../examples/two_maths.xml nowhere.xml" + options).Status, 1);
    EXPECT_EQ(folder.Read("d"), "old");
    EXPECT_EQ(RunMox("export ../examples --depfile-target 'a stamp'" + options).Status, 0);
    EXPECT_TRUE(folder.Read("d").starts_with("a\\ stamp: \\\n  ../examples/flip_book.xml \\\n"));
}

TEST(ExportCommand, ProgressBarOnTerminalsOnly)
{
    const TemporaryFolder folder;
    const std::string command =
        Quote(MOX_PROGRAM) + " export " + Quote(MOX_TEST_DATA "/../examples") + " -o ";
    const auto onTerminal = [&](const std::string& settings) {
        return RunShell("cd " + Quote(folder.Path()) + " && script -qec \"" + settings + " " +
                        command + "out\" /dev/null </dev/null")
            .Text;
    };
    const std::string bar = "\r\x1b[K[########";
    EXPECT_NE(onTerminal("TERM=xterm").find(bar), std::string::npos);
    EXPECT_EQ(onTerminal("TERM=dumb"), "mox: 5 exported, 0 failed, 0 warnings\r\n");
    EXPECT_EQ(RunShell("TERM=xterm " + command + Quote(folder.Path() / "out")).Text,
              "mox: 5 exported, 0 failed, 0 warnings\n");
}

TEST(Plugins, SearchPath)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path() / "one");
    std::filesystem::create_directory(folder.Path() / "two");
    std::filesystem::copy_file(MOX_CORE_PLUGIN, folder.Path() / "two/again.so");
    const std::string path = "MOX_PLUGIN_PATH=" + Quote(folder.Path() / "one") +
                             "::" + Quote(folder.Path() / "two") + ":";
    const std::size_t once = RunMox("catalogue").Text.size();
    EXPECT_EQ(RunMox("catalogue", path).Text.size(), 2 * once);
    EXPECT_EQ(
        RunMox("catalogue --plugins " + Quote(folder.Path() / "one/../two"), path).Text.size(),
        2 * once);

    const auto broken = folder.Write("one/broken.so", "no library");
    for (const Outcome& outcome :
         {RunMox("export ../examples/two_maths.xml", path),
          RunMox("--plugins " + Quote(folder.Path() / "one") + " catalogue")}) {
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_TRUE(outcome.Text.starts_with("mox: " + broken.string() + ": cannot be loaded: "));
        EXPECT_EQ(std::count(outcome.Text.begin(), outcome.Text.end(), '\n'), 1);
    }
}

/// The program and its libraries work wherever they are moved together.
TEST(Program, RunsFromAnyFolder)
{
    const TemporaryFolder folder;
    const std::filesystem::path from = std::filesystem::path(MOX_PROGRAM).parent_path();
    std::filesystem::create_directories(folder.Path() / "bin");
    std::filesystem::create_directories(folder.Path() / "lib/mox");
    std::filesystem::copy(MOX_PROGRAM, folder.Path() / "bin");
    std::filesystem::copy(MOX_CORE_PLUGIN, folder.Path() / "lib/mox");
    for (const auto& entry : std::filesystem::directory_iterator(from.parent_path() / "lib")) {
        if (entry.path().filename().string().starts_with("libmox_materials.so"))
            std::filesystem::copy(entry, folder.Path() / "lib");
    }
    const Outcome outcome =
        RunShell("cd / && LD_DEBUG=libs " + Quote(folder.Path() / "bin/mox") + " export " +
                 Quote(MOX_TEST_DATA "/../examples/two_maths.xml"));
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_NE(outcome.Text.find("\nnodes: "), std::string::npos);
    EXPECT_EQ(outcome.Text.find(from.parent_path().string()), std::string::npos);
}

} // namespace
