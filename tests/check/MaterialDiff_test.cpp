#include "mox/Text.h"
#include "mox/check/MaterialDiff.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Golden.h"
#include "tests/support/MaterialText.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

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

/// A line for each difference.
std::string Differences(const MaterialDocument& before, const MaterialDocument& after)
{
    std::string text;
    for (const std::string& line : DescribeDifferences(before, after, TestPlugins()))
        text += line + "\n";
    return text;
}

TEST(MaterialDiff, MeaningCountsAndNotWriting)
{
    const MaterialDocument before = MaterialFromText(material);
    MaterialDocument after = MaterialFromText(Replaced("=0.5", "=5.0e-1"));
    std::reverse(after.Nodes.begin(), after.Nodes.end());
    std::reverse(after.Edges.begin(), after.Edges.end());
    after.Nodes[1].Properties.push_back(
        {"Function", Mox::Materials::GuiPropertyKind::Enum, "Multiply"});
    EXPECT_EQ(Differences(before, after), "");
    EXPECT_EQ(Differences(after, before), "");
}

TEST(MaterialDiff, SaysInWordsWhatChanged)
{
    const struct
    {
        const char* From;
        const char* To;
    } changes[] = {
        {"=0.5", "=0.25"},
        {"Name=rock", "Name=moss"},
        {"half CoreMaths; Default Value 2=0.5", "half CoreLayerBlend"},
        {"uv.read -> again.in_uv\n", ""},
        {"surface.in_colour", "surface.in_emission"},
        {"paint.out_colour -> half", "again.out_colour -> half"},
        {"paint", "stone"}, // a new id is told once, although edges and references carry it too
        {"; Reference=paint", ""},
    };
    const MaterialDocument before = MaterialFromText(material);
    std::string text;
    for (const auto& [from, to] : changes) {
        text += Compose("\"", from, "\" becomes \"", to, "\"\n");
        text += Differences(before, MaterialFromText(Replaced(from, to)));
    }

    MaterialDocument old = before;
    MaterialDocument other = MaterialFromText(material + "extra CoreUv\n");
    old.Description = {{"name", "Rock"}, {"desc", "Old"}};
    other.Description = {{"name", "Stone"}};
    other.RenderState = {{"alphaTest", "Yes"}};
    old.Bindings = {{"texture", "rock", {{"default", "a.png"}}}};
    other.Bindings = {{"texture", "rock", {{"default", "b.png"}}}};
    text += "nodes, descriptions and bindings\n" + Differences(old, other);
    ExpectGolden("check/differences.txt", text);
}

} // namespace
