#include "mox/document/MaterialDocument.h"
#include "mox/document/NodeFragment.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/host/HostError.h"
#include "tests/support/NodeText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace Mox;

namespace {

class NodeFragmentTest : public testing::Test
{
protected:
    NodeFragmentTest()
    {
        _plugins.LoadFolder(std::filesystem::path(MOX_CORE_PLUGIN).parent_path());
    }

    boost::shared_ptr<Materials::GuiNode> Create(const std::string& type) const
    {
        return _plugins.CreateNode(type);
    }

    /// The fragment of the node that a document with just this fragment holds.
    std::string LoadAndFormat(const std::string& fragment) const
    {
        const std::filesystem::path file = testing::TempDir() + "fragment.xml";
        std::ofstream(file) << "<material version=\"1\"><nodes>" << fragment
                            << "</nodes><edges/></material>";
        const Host::MaterialGraph graph =
            Host::LoadMaterial(Host::ReadMaterialDocument(file), _plugins);
        const auto& node = *graph.Nodes().begin();
        return Host::FormatNodeFragment(*node.Gui, node.Id);
    }

    /// Types of the catalogue; the placeholder, which rewrites its description, is left out.
    std::vector<std::string> Types() const
    {
        std::vector<std::string> types;
        for (const auto& row : _plugins.Plugins().front().Descriptions()) {
            if (row.Listed)
                types.push_back(row.TypeName);
        }
        return types;
    }

private:
    Host::PluginSet _plugins;
};

TEST_F(NodeFragmentTest, LoadsBackTheSame)
{
    ASSERT_EQ(Types().size(), 8u);
    for (const std::string& type : Types()) {
        const auto node = Create(type);
        const std::string fresh = Host::FormatNodeFragment(*node, "id");
        EXPECT_EQ(LoadAndFormat(fresh), fresh);

        node->SetName("a <b> & \"c\"\t\xc3\xa9");
        ApplySettings(*node, "PositionX=0.1; PositionY=-1e-30; BindingIndex=-2147483648");
        node->Description->SetString("two\r\nlines");
        const std::string odd = Host::FormatNodeFragment(*node, "id & more");
        EXPECT_EQ(LoadAndFormat(odd), odd);
        EXPECT_NE(odd, fresh);
    }
}

TEST_F(NodeFragmentTest, RefusesWhatXmlCannotHold)
{
    const auto node = Create("CoreUv");
    for (const std::string& id : {std::string("\xff"), std::string("a\x01"), std::string("\xc3"),
                                  std::string("\xef\xbf\xbf"), std::string("a\0b", 3)}) {
        EXPECT_THROW(Host::FormatNodeFragment(*node, id), Host::HostError) << id;
    }
}

} // namespace
