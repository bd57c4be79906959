#include "mox/check/MaterialDiff.h"
#include "tests/support/MaterialText.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Mox::Host;

namespace {

using Lines = std::vector<std::string>;

const std::string material = R"(
    uv CoreUv; Name=uv0
    paint CoreTexture; Name=rock
    again CoreTexture; Reference=paint
    half CoreMaths; Default Value 2=0.5
    surface Surface
    uv.read -> paint.in_uv
    uv.read -> again.in_uv
    paint.out_colour -> half.in_value1
    half.out_value -> surface.in_colour
)";

std::string Replaced(const std::string& from, const std::string& to)
{
    std::string text = material;
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

Lines Differences(const MaterialDocument& before, const MaterialDocument& after)
{
    return DescribeDifferences(before, after, TestPlugins());
}

TEST(MaterialDiff, MeaningCountsAndNotWriting)
{
    const MaterialDocument before = MaterialFromText(material);
    MaterialDocument after = MaterialFromText(Replaced("=0.5", "=5.0e-1"));
    std::reverse(after.Nodes.begin(), after.Nodes.end());
    std::reverse(after.Edges.begin(), after.Edges.end());
    after.Nodes[1].Properties.push_back(
        {"Function", Mox::Materials::GuiPropertyKind::Enum, "Multiply"});
    EXPECT_EQ(Differences(before, after), Lines{});
    EXPECT_EQ(Differences(after, before), Lines{});
}

TEST(MaterialDiff, SaysInWordsWhatChanged)
{
    struct Case
    {
        const char* From;
        const char* To;
        Lines Differences;
    };
    const Case cases[] = {
        {"=0.5",
         "=0.25",
         {"node \"half\" (CoreMaths): \"Default Value 2\" changed from \"0.5\" to \"0.25\""}},
        {"Name=rock",
         "Name=moss",
         {"node \"paint\" (CoreTexture): \"Name\" changed from \"rock\" to \"moss\""}},
        {"half CoreMaths; Default Value 2=0.5",
         "half CoreLayerBlend",
         {"node \"half\" changed its type from \"CoreMaths\" to \"CoreLayerBlend\""}},
        {"uv.read -> again.in_uv\n",
         "",
         {"edge from \"uv\" port \"read\" to \"again\" port \"in_uv\" is gone"}},
        {"surface.in_colour",
         "surface.in_emission",
         {"edge from \"half\" port \"out_value\" to \"surface\" port \"in_colour\" is gone",
          "edge from \"half\" port \"out_value\" to \"surface\" port \"in_emission\" is new"}},
        {"paint.out_colour -> half",
         "again.out_colour -> half",
         {"\"half\" port \"in_value1\" is fed by \"again\" port \"out_colour\" instead of "
          "\"paint\" port "
          "\"out_colour\""}},
        // A new id is told once, although edges and references carry it too.
        {"paint", "stone", {"node \"paint\" is renamed to \"stone\""}},
        {"; Reference=paint",
         "",
         {"node \"again\" (CoreTexture): \"Reference\" is gone, it was \"paint\""}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.To);
        EXPECT_EQ(Differences(MaterialFromText(material), MaterialFromText(Replaced(c.From, c.To))),
                  c.Differences);
    }
}

TEST(MaterialDiff, WholeNodesDescriptionsAndBindings)
{
    MaterialDocument before = MaterialFromText(material);
    MaterialDocument after = MaterialFromText(material + "extra CoreUv\n");
    before.Description = {{"name", "Rock"}, {"desc", "Old"}};
    after.Description = {{"name", "Stone"}};
    after.RenderState = {{"alphaTest", "Yes"}};
    before.Bindings = {{"texture", "rock", {{"default", "a.png"}}}};
    after.Bindings = {{"texture", "rock", {{"default", "b.png"}}}};
    EXPECT_EQ(
        Differences(before, after),
        (Lines{"description: \"desc\" is gone, it was \"Old\"",
               "description: \"name\" changed from \"Rock\" to \"Stone\"",
               "render state: \"alphaTest\" is new, it is \"Yes\"",
               "node \"extra\" (CoreUv) is new",
               "binding \"rock\" (texture): \"default\" changed from \"a.png\" to \"b.png\""}));
}

} // namespace
