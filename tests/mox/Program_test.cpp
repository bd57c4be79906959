#include "tests/support/Golden.h"
#include "tests/support/RunMox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace {

TEST(Program, ExportsTheExample)
{
    const Outcome outcome = RunMox("export ../examples/two_maths.xml");
    EXPECT_EQ(outcome.Status, 0);
    ExpectGolden("mox/two_maths.txt", outcome.Text);
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
    const Outcome folder = RunMox("export shader");
    EXPECT_EQ(folder.Status, 1);
    EXPECT_EQ(folder.Text, "mox: shader: holds no material\n");
    for (const char* arguments :
         {"", "export", "fly", "export --nonsense x.xml", "export mox", "export x.xml --depfile d",
          "export -j 0 -o o x.xml", "export -j some -o o x.xml", "completion csh"})
        EXPECT_EQ(RunMox(arguments).Status, 2) << arguments;
    EXPECT_EQ(RunMox("--help").Status, 0);
    EXPECT_EQ(RunMox("export ../examples/two_maths.xml > /dev/full").Status, 1);
}

} // namespace
