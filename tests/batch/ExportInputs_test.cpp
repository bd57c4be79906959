#include "mox/batch/Depfile.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/document/DocumentInputs.h"
#include "mox/host/HostError.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

TEST(MaterialFiles, FoldersStandForTheirMaterials)
{
    const TemporaryFolder folder;
    folder.Write("m/b/late.xml", "<!-- first --><material version=\"1\"/>");
    folder.Write("m/b.xml", "<material");
    folder.Write("m/a.b.xml", "<material/>");
    folder.Write("m/empty.xml");
    folder.Write("m/schema.xml", "<grammar><material/></grammar>");
    folder.Write("m/material.txt", "<material/>");
    folder.Write("m/folder.xml/readme", "");
    const std::string root = (folder.Path() / "m").string();
    std::string found;
    std::filesystem::create_symlink("b.xml", root + "/link.xml");
    std::filesystem::create_directory_symlink("m", root + "2");
    for (const MaterialFile& file :
         FindMaterials({"gone/x.y.xml", root, root + "/", root + "/b/../b.xml", root + "2"}, 2)) {
        EXPECT_TRUE(file.Document == "gone/x.y.xml" || std::filesystem::exists(file.Document));
        found += file.Name + " ";
    }
    EXPECT_EQ(found, "x.y a.b b b/late empty link ");
    EXPECT_THROW(FindMaterials({folder.Path() / "m/folder.xml"}, 1), HostError);
}

TEST(Depfile, RulesAppearTogether)
{
    const TemporaryFolder folder;
    Depfile depfile(folder.Path() / "d");
    depfile.Add({"o/a.cg", "o/a b.cg"}, {"a.xml", "p.so"});
    depfile.Add({"#\\"}, {"$x\\ y:z.xml", "p.so", "t"});
    EXPECT_EQ(folder.Read("d"), "");
    EXPECT_THROW(depfile.Add({"o"}, {"a\nb"}), HostError);
    depfile.Commit();
    EXPECT_EQ(folder.Read("d"), "o/a.cg o/a\\ b.cg: \\\n  a.xml \\\n  p.so\na.xml:\np.so:\n"
                                "\\#\\: \\\n  $$x\\\\\\ y\\:z.xml \\\n  p.so \\\n  t\n"
                                "$$x\\\\\\ y\\:z.xml:\nt:\n");
}

TEST(DocumentInputs, TexturesOfBindings)
{
    MaterialDocument document;
    document.File = "in/m.xml";
    document.Bindings = {{"texture", "paint", {{"srgb", "1"}, {"default", "t/a.png"}}, 0},
                         {"float", "tint", {{"default", "1"}}, 0},
                         {"texture", "empty", {{"default", ""}}, 0},
                         {"texture", "far", {{"default", "/t/b.png"}}, 0}};
    EXPECT_EQ(TextureFiles(document.Bindings, document.File),
              (std::vector<std::filesystem::path>{"in/t/a.png", "/t/b.png"}));
}

} // namespace
