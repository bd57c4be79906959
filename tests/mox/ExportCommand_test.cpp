#include "tests/support/RunMox.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

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
        const Outcome outcome = RunMox("export ../examples/rim_light.xml mox/bad/empty.xml "
                                       "nowhere.xml ../examples/waving_flag.xml" +
                                       output + workers);
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_EQ(outcome.Text, "mox: mox/bad/empty.xml: the document is empty\n"
                                "mox: nowhere.xml: cannot be read: No such file or directory\n"
                                "mox: 2 exported, 2 distinct, 2 failed, 0 warnings\n");
    }
    for (const std::string name : {"rim_light", "waving_flag"}) {
        EXPECT_EQ(RunMox("export ../examples/" + name + ".xml").Text,
                  folder.Read("out/" + name + ".vertex.cg") + "\n// ------\n" +
                      folder.Read("out/" + name + ".fragment.cg"));
    }

    // One file by three roads is one material; two files for one output are refused.
    const std::string two = "export ../examples ../examples/flip_book.xml "
                            "mox/../../examples/flip_book.xml -o " +
                            Quote(folder.Path() / "two");
    EXPECT_NE(RunMox(two).Text.find("\nmox: 7 exported, 7 distinct,"), std::string::npos);
    const auto other = folder.Write("flip_book.xml");
    const Outcome clash = RunMox("export ../examples " + Quote(other) + " -o out");
    EXPECT_EQ(clash.Status, 1);
    EXPECT_EQ(clash.Text, "mox: out/flip_book.vertex.cg: would be written for both "
                          "../examples/flip_book.xml and " +
                              other.string() + "\n");
}

TEST(ExportCommand, ManyAtOnceComeOutAsOneByOne)
{
#ifdef MOX_HAS_COMPILER
    const std::string target = "hlsl,msl";
#else
    const std::string target = "cg";
#endif
    const TemporaryFolder folder;
    const Outcome outcome = RunShell(
        "cd " + Quote(folder.Path()) +
        " && for i in 1 2 3 4 5; do mkdir -p in/$i && cp '" MOX_EXAMPLES "'/*.xml in/$i; done; "
        "for j in 1 8; do " +
        Quote(MOX_PROGRAM) + " export in -o out$j -j $j --target " + target +
        " 2>messages || { cat messages; exit 1; }; done; diff -r out1 out8");
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_EQ(outcome.Text, "");
}

/// A dependency file that left out a failed material would hide what that hangs on.
TEST(ExportCommand, FailureKeepsTheOldDependencies)
{
    const TemporaryFolder folder;
    folder.Write("d", "old");
    const std::string options =
        " -o " + Quote(folder.Path()) + " --depfile " + Quote(folder.Path() / "d");
    EXPECT_EQ(RunMox("export ../examples/rim_light.xml nowhere.xml" + options).Status, 1);
    EXPECT_EQ(folder.Read("d"), "old");
    EXPECT_EQ(RunMox("export ../examples --depfile-target 'a stamp'" + options).Status, 0);
    EXPECT_TRUE(folder.Read("d").starts_with("a\\ stamp: \\\n  ../examples/flip_book.xml \\\n"));
}

TEST(ExportCommand, ProgressBarOnTerminalsOnly)
{
    const TemporaryFolder folder;
    for (const char* copy : {"in/a.xml", "in/b.xml"}) {
        const auto file = folder.Write(copy);
        std::filesystem::copy_file(MOX_EXAMPLES "/rim_light.xml", file,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    const std::string start = "cd " + Quote(folder.Path()) + " && ";
    const std::string command = Quote(MOX_PROGRAM) + " export in -o out";
    const auto onTerminal = [&](const std::string& setting) {
        return RunShell(start + "script -qec \"" + setting + " " + command +
                        "\" /dev/null </dev/null")
            .Text;
    };
    const std::string summary = "mox: 2 exported, 1 distinct, 0 failed, 0 warnings";
    const std::string bar = "\r\x1b[K[####################....................] 1/2\r\x1b[K";
    EXPECT_EQ(onTerminal("TERM=xterm"), bar + summary + "\r\n");
    EXPECT_EQ(onTerminal("TERM=dumb"), summary + "\r\n");
    EXPECT_EQ(RunShell(start + "TERM=xterm " + command).Text, summary + "\n");
}

TEST(Plugins, SearchPath)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.Path() / "one");
    std::filesystem::create_directory(folder.Path() / "two");
    std::filesystem::copy_file(MOX_CORE_PLUGIN, folder.Path() / "two/again.so");
    const std::string path = "MOX_PLUGIN_PATH=" + Quote(folder.Path() / "one") +
                             "::" + Quote(folder.Path() / "two") + ":";
    const auto countMaths = [](const Outcome& outcome) {
        EXPECT_EQ(outcome.Status, 0);
        const std::string line = "\"type\": \"CoreMaths\"";
        std::size_t count = 0;
        for (auto i = outcome.Text.find(line); i != std::string::npos;
             i = outcome.Text.find(line, i + 1))
            ++count;
        return count;
    };
    const std::string twice = " --plugins " + Quote(folder.Path() / "one/../two");
    EXPECT_EQ(countMaths(RunMox("catalogue --json")), 1u);
    EXPECT_EQ(countMaths(RunMox("catalogue --json", path)), 2u);
    EXPECT_EQ(countMaths(RunMox("catalogue --json" + twice, path)), 2u);

    const auto broken = folder.Write("one/broken.so", "no library");
    for (const Outcome& outcome :
         {RunMox("export ../examples/rim_light.xml", path),
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
    const std::filesystem::path from =
        std::filesystem::path(MOX_PROGRAM).parent_path().parent_path();
    for (const char* part : {"bin", "lib", "share"}) {
        std::filesystem::copy(from / part, folder.Path() / part,
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::copy_symlinks);
    }
    const Outcome outcome = RunShell("cd / && LD_DEBUG=libs " + Quote(folder.Path() / "bin/mox") +
                                     " export " + Quote(MOX_EXAMPLES "/rim_light.xml"));
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_NE(outcome.Text.find("\nvoid main("), std::string::npos);
    EXPECT_EQ(outcome.Text.find(from.string()), std::string::npos);
}

} // namespace
