#include "tests/support/RunMox.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

TEST(GraphCommand, WritesTheFormatOfTheName)
{
    const TemporaryFolder folder;
    const auto draw = [&](const std::string& arguments, const std::string& file) {
        const Outcome outcome = RunMox("graph ../examples/rim_light.xml " + arguments + " -o '" +
                                       (folder.Path() / file).string() + "'");
        EXPECT_EQ(outcome.Status, 0) << outcome.Text;
        EXPECT_EQ(outcome.Text, "");
        return folder.Read(file);
    };
    EXPECT_TRUE(draw("", "a.svg").starts_with("<?xml"));
    EXPECT_TRUE(draw("", "a.png").starts_with("\x89PNG"));
    EXPECT_TRUE(draw("", "a.dot").starts_with("digraph"));
    EXPECT_TRUE(draw("--format svg", "b.png").starts_with("<?xml"));
    EXPECT_TRUE(draw("--shader", "b.svg").starts_with("<?xml"));
    EXPECT_EQ(RunMox("graph ../examples/rim_light.xml").Text, folder.Read("a.dot"));

    const Outcome unknown = RunMox("graph ../examples/rim_light.xml -o a.gif");
    EXPECT_EQ(unknown.Status, 2);
    EXPECT_NE(unknown.Text.find("must end in .svg, .png or .dot"), std::string::npos);
}

TEST(GraphCommand, DrawsWhatIsWrongAndFails)
{
    const TemporaryFolder folder;
    const std::string picture = (folder.Path() / "a.svg").string();
    const Outcome outcome = RunMox("graph mox/bad/circle.xml -o '" + picture + "'");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_NE(outcome.Text.find("edges run in a circle"), std::string::npos);
    EXPECT_NE(folder.Read("a.svg").find("edges run in a circle"), std::string::npos);

    const Outcome missing = RunMox("graph nowhere.xml -o '" + picture + "2.svg'");
    EXPECT_EQ(missing.Status, 1);
    EXPECT_EQ(missing.Text, "mox: nowhere.xml: cannot be read: No such file or directory\n");
    EXPECT_EQ(folder.Count(), 1);

    // Without Graphviz, but with the programs that start it.
    const TemporaryFolder programs;
    for (const char* name : {"env", "timeout"})
        std::filesystem::create_symlink(std::string("/usr/bin/") + name, programs.Path() / name);
    const Outcome bare = RunMox("graph ../examples/rim_light.xml --format svg",
                                "PATH='" + programs.Path().string() + "'");
    EXPECT_EQ(bare.Status, 1);
    EXPECT_EQ(bare.Text,
              "mox: the program \"dot\" of Graphviz, which draws pictures, is not there\n");
}

#ifdef MOX_HAS_PREVIEW
TEST(GraphCommand, ThumbnailsShowWhatEachNodePutsOut)
{
    const Outcome icons = RunMox("graph ../examples/tinted_texture.xml --format svg");
    const Outcome outcome =
        RunMox("graph ../examples/tinted_texture.xml --thumbnails --format svg");
    if (outcome.Text.find("no Vulkan device") != std::string::npos)
        GTEST_SKIP() << outcome.Text;
    ASSERT_EQ(outcome.Status, 0) << outcome.Text;
    const auto countImages = [](const std::string& svg) {
        int count = 0;
        for (auto at = svg.find("data:image/png"); at != svg.npos;
             at = svg.find("data:image/png", at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(countImages(outcome.Text), 6);
    EXPECT_EQ(countImages(icons.Text), 6);
    EXPECT_NE(outcome.Text, icons.Text);
}
#endif

} // namespace
