#include "mox/document/MaterialDiff.h"
#include "tests/support/BuildTree.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Mox::Host;

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

/// Formats the differences, one per line.
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

/// Each line changes the material; the right-hand side is the new version.
TEST(MaterialDiff, SaysInWordsWhatChanged)
{
    ExpectSession("document/differences.txt", [](const std::string& change) {
        const std::size_t arrow = change.find(" => ");
        return Differences(
            MaterialFromText(material),
            MaterialFromText(Replaced(change.substr(0, arrow), change.substr(arrow + 4))));
    });
}

TEST(MaterialDiff, WhatDocumentsHoldBesideNodes)
{
    MaterialDocument before;
    MaterialDocument after;
    before.Description = {{"name", "Rock"}, {"desc", "Old"}};
    after.Description = {{"name", "Stone"}};
    after.RenderState = {{"alphaTest", "Yes"}};
    before.Bindings.push_back({"texture", "rock", {{"default", "a.png"}}});
    after.Bindings.push_back({"texture", "rock", {{"default", "b.png"}}});
    before.Edges.push_back({"a", "o", "b", "i", 0, {}, {{1, 2}}});
    after.Edges.push_back({"a", "o", "b", "i", 0, {}, {{1, 3}, {4, 5}}});
    before.Annotations.push_back({AnnotationKind::Frame, "f", "Wood", {0, 0}, 10, 20, "#ffffff"});
    before.Annotations.push_back({AnnotationKind::Note, "n", "Why", {0, 0}, 10, 20, ""});
    after.Annotations.push_back({AnnotationKind::Note, "m", "Why", {0, 0}, 10, 20, ""});
    after.Annotations.push_back({AnnotationKind::Frame, "f", "Stone", {0, 0}, 10, 21, ""});
    EXPECT_EQ(Differences(before, after),
              "description: \"desc\" was removed; it was \"Old\"\n"
              "description: \"name\" changed from \"Rock\" to \"Stone\"\n"
              "render state: \"alphaTest\" was added with the value \"Yes\"\n"
              "edge from \"a\" port \"o\" to \"b\" port \"i\": \"points\" changed from \"1,2\" to "
              "\"1,3 4,5\"\n"
              "binding \"rock\" (texture): \"default\" changed from \"a.png\" to \"b.png\"\n"
              "annotation \"f\": \"colour\" was removed; it was \"#ffffff\"\n"
              "annotation \"f\": \"height\" changed from \"20\" to \"21\"\n"
              "annotation \"f\": \"text\" changed from \"Wood\" to \"Stone\"\n"
              "annotation \"n\" (note) was removed\n"
              "annotation \"m\" (note) was added\n");
}

} // namespace
