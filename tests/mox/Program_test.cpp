#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <sys/wait.h>

namespace {

struct Outcome
{
    int Status;
    std::string Text; ///< standard output and standard error
};

Outcome RunMox(const std::string& arguments)
{
    const std::string command =
        "cd '" MOX_TEST_DATA "' && '" MOX_PROGRAM "' " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return {-1, "popen failed"};
    Outcome outcome{};
    std::array<char, 4096> buffer;
    while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe))
        outcome.Text.append(buffer.data(), size);
    outcome.Status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

TEST(Program, ExportsTheExample)
{
    const Outcome outcome = RunMox("export ../examples/two_maths.xml");
    EXPECT_EQ(outcome.Status, 0);
    ExpectGolden("mox/two_maths.txt", outcome.Text);
}

TEST(Program, FindsThePluginsBesideIt)
{
    const std::string text = RunMox("catalogue").Text;
    const auto count = [&](const std::string& part) {
        int found = 0;
        for (std::size_t i = text.find(part); i != text.npos; i = text.find(part, i + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("  library Core"), 9);
    EXPECT_EQ(count("  library Surface"), 7);
}

/// Every document in mox/bad stops the export with one line, which stands in a file beside it.
TEST(Program, EveryBadDocumentGivesOneClearLine)
{
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(MOX_TEST_DATA) / "mox/bad")) {
        if (entry.path().extension() != ".xml")
            continue;
        ++count;
        const std::string stem = "mox/bad/" + entry.path().stem().string();
        SCOPED_TRACE(stem);
        const Outcome outcome = RunMox("export " + stem + ".xml");
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_EQ(std::count(outcome.Text.begin(), outcome.Text.end(), '\n'), 1);
        ExpectGolden(stem + ".txt", outcome.Text);
    }
    EXPECT_GT(count, 10);
}

TEST(Program, MissingFilesAndBadUsage)
{
    const Outcome missing = RunMox("export nowhere.xml");
    EXPECT_EQ(missing.Status, 1);
    EXPECT_EQ(missing.Text, "mox: nowhere.xml: cannot be read: No such file or directory\n");
    const Outcome folder = RunMox("export mox");
    EXPECT_EQ(folder.Status, 1);
    EXPECT_EQ(folder.Text, "mox: mox: cannot be read: Is a directory\n");
    for (const char* arguments : {"", "export", "fly", "export --nonsense x.xml"})
        EXPECT_EQ(RunMox(arguments).Status, 2) << arguments;
    EXPECT_EQ(RunMox("--help").Status, 0);
    EXPECT_EQ(RunMox("export ../examples/two_maths.xml > /dev/full").Status, 1);
}

} // namespace
