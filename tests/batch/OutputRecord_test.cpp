#include "mox/batch/OutputRecord.h"
#include "mox/host/ContentHash.h"
#include "tests/support/GraphText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

/// Documents are in the folder "in", outputs in the folder "out" next to it.
class OutputRecordTest : public testing::Test
{
protected:
    void SetUp() override { Folder.Write("out/other", "not from an export"); }

    /// The outputs that an export wrote for one document.
    struct Made
    {
        std::string Document;
        std::vector<std::string> Outputs; ///< the content of each file is its name
    };

    /// Exports and describes the leftover outputs and the problems.
    std::string Update(const std::vector<Made>& exported, bool prunes = false,
                       ExportLayout layout = ExportLayout::ByMaterial) const
    {
        OutputRecord record(Folder.Path() / "out", layout);
        for (const auto& [document, names] : exported) {
            std::vector<ExportedFile> outputs;
            outputs.reserve(names.size());
            for (const std::string& name : names)
                outputs.push_back({Folder.Write("out/" + name, name), HashContent({name}, "")});
            record.Add(Folder.Write("in/" + document), outputs);
        }
        ProblemList problems;
        std::string text;
        for (const LeftOutput& left : record.Update(prunes, problems))
            text +=
                left.File.string() + " " + left.Reason + (left.IsRemoved ? ", removed\n" : "\n");
        text += FormatProblems(problems);
        const std::string folder = Folder.Path().string() + "/";
        for (std::size_t at = text.find(folder); at != std::string::npos; at = text.find(folder))
            text.erase(at, folder.size());
        return text;
    }

    bool Exists(const std::string& name) const
    {
        return std::filesystem::exists(Folder.Path() / name);
    }
    void Remove(const std::string& name) const { std::filesystem::remove(Folder.Path() / name); }

    const TemporaryFolder Folder;
};

TEST_F(OutputRecordTest, FindsAndRemovesWhatIsLeft)
{
    EXPECT_EQ(
        Update({{"a.xml", {"a.vertex.cg", "a.fragment.cg"}}, {"b.xml", {"b.cg", "b\\\n.cg"}}}), "");
    EXPECT_EQ(Update({{"c.xml", {"c.cg"}}}, true), "") << "what was not exported again is not left";

    // The outputs of a renamed document follow it.
    std::filesystem::create_directory(Folder.Path() / "in/moved");
    std::filesystem::rename(Folder.Path() / "in/a.xml", Folder.Path() / "in/moved/a.xml");
    EXPECT_EQ(Update({{"moved/a.xml", {"a.vertex.cg"}}}),
              "out/a.fragment.cg is left from in/a.xml, which no longer exists\n");
    Remove("in/b.xml");
    Folder.Write("out/b.cg", "edited");
    const std::string left = "out/a.fragment.cg is left from in/a.xml, which no longer exists\n"
                             "out/b.cg is left from in/b.xml, which no longer exists\n"
                             "out/b\\\n.cg is left from in/b.xml, which no longer exists\n";
    EXPECT_EQ(Update({}), left);
    EXPECT_EQ(Update({}), left);
    const std::string kept = "warning export: out/b.cg: is left from in/b.xml, which no longer "
                             "exists; it is kept because it was "
                             "changed after it was exported\n";
    EXPECT_EQ(Update({}, true),
              "out/a.fragment.cg is left from in/a.xml, which no longer exists, removed\n"
              "out/b\\\n.cg is left from in/b.xml, which no longer exists, removed\n" +
                  kept);
    EXPECT_EQ(Update({}, true), kept);
    EXPECT_FALSE(Exists("out/a.fragment.cg") || Exists("out/b\\\n.cg"));
    EXPECT_TRUE(Exists("out/a.vertex.cg") && Exists("out/c.cg") && Exists("out/other"));
    Remove("out/b.cg");
    EXPECT_EQ(Update({}, true), "") << "the user has removed it";
}

TEST_F(OutputRecordTest, ProgramsByContentGoWithTheLastMaterial)
{
    const auto update = [this](const std::vector<Made>& exported) {
        return Update(exported, true, ExportLayout::ByContent);
    };
    EXPECT_EQ(update({{"a.xml", {"programs/1.cg", "a.programs"}},
                      {"b.xml", {"programs/1.cg", "b.programs"}}}),
              "");
    EXPECT_EQ(update({{"a.xml", {"programs/2.cg", "a.programs"}}}), "");
    EXPECT_EQ(update({{"a.xml", {"programs/3.cg", "a.programs"}}}),
              "out/programs/2.cg is a program that no material uses any more, removed\n");
    Remove("in/b.xml");
    EXPECT_EQ(update({}),
              "out/b.programs is left from in/b.xml, which no longer exists, removed\n"
              "out/programs/1.cg is left from in/b.xml, which no longer exists, removed\n");
    EXPECT_TRUE(Exists("out/programs/3.cg") && Exists("out/a.programs"));
}

/// A forged list must not remove anything outside the folder.
TEST_F(OutputRecordTest, HostileListsRemoveNothing)
{
    Folder.Write("victim", "content");
    Folder.Write("elsewhere/victim", "content");
    Folder.Write("out/inside", "content");
    std::filesystem::create_directory_symlink(Folder.Path() / "elsewhere",
                                              Folder.Path() / "out/link");
    std::filesystem::create_symlink(Folder.Path() / "victim", Folder.Path() / "out/file");
    std::filesystem::create_directory(Folder.Path() / "out/folder");
    const std::string first = "mox outputs 1\n";
    const std::string hash = HashContent({"content"}, "") + " ";
    const std::string damaged =
        "warning export: out/.mox-outputs: is not a list of outputs, so a new list is started; "
        "outputs of materials that no longer exist are unknown\n";
    const std::string kept =
        " is a program that no material uses any more; it is kept because it is ";
    const std::pair<std::string, std::string> cases[] = {
        {first + hash + "../victim\n", damaged},
        {first + hash + (Folder.Path() / "victim").string() + "\n", damaged},
        {first + hash + "link/../../victim\n", damaged},
        {first + hash + "./inside\n", damaged},
        {first + hash + ".\n", damaged},
        {first + hash + "folder/\n", damaged},
        {first + hash + "\n", damaged},
        {first + hash + ".mox-outputs\n", damaged},
        {first + hash + "inside\n" + hash + "inside\n", damaged},
        {first + " ../in/a.xml\n", damaged},
        {first + "short inside\n", damaged},
        {first + hash + "inside", damaged},
        {"mox outputs 2\n" + hash + "inside\n", damaged},
        {"", damaged},
        {first + hash + "link/victim\n",
         "warning export: out/link/victim:" + kept + "reached through a symbolic link\n"},
        {first + hash + "file\n", "warning export: out/file:" + kept + "not a regular file\n"},
        {first + hash + "folder\n", "warning export: out/folder:" + kept + "not a regular file\n"},
    };
    for (const auto& [list, expected] : cases) {
        Folder.Write("out/.mox-outputs", list);
        EXPECT_EQ(Update({}, true), expected) << list;
        EXPECT_TRUE(Exists("victim") && Exists("elsewhere/victim") && Exists("out/inside")) << list;
    }
    Remove("out/.mox-outputs");
    std::filesystem::create_directory(Folder.Path() / "out/.mox-outputs");
    EXPECT_EQ(Update({{"a.xml", {"a.cg"}}}, true),
              "warning export: out/.mox-outputs: cannot be written: it exists but is not a regular "
              "file\n");
}

} // namespace
