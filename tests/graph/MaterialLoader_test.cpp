#include "mox/graph/MaterialLoader.h"
#include "mox/graph/MaterialSaver.h"
#include "tests/support/GraphText.h"
#include "tests/support/ProbeNode.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

namespace {

constexpr auto text = GuiPropertyKind::String;
constexpr auto reference = GuiPropertyKind::Node;

TEST(MaterialLoader, FindsEverythingInOneGo)
{
    MaterialDocument document;
    document.File = "m.xml";
    document.Nodes = {
        {"a",
         "Probe",
         0,
         {{"Width", GuiPropertyKind::Integer, "x", 2},
          {"Float", GuiPropertyKind::Float, "1", 3},
          {"Width", GuiPropertyKind::Float, "1", 4},
          {"Width", GuiPropertyKind::Integer, "1", 5},
          {"Sheen", text, "s", 6},
          {"Master", reference, "nobody", 7}},
         1},
        {"b", "Probe", 1, {{"Inputs", GuiPropertyKind::Integer, "1", 9}}, 8},
        {"c", "Probe", 0, {{"Failure", text, "no ports", 11}}, 10},
        {"d", "Bomb", 0, {}, 12},
        {"e", "Alien", 0, {{"Twin", reference, "f", 14}}, 13},
        {"f", "Probe", 0, {{"Master", reference, "g", 16}}, 15},
        {"g", "Probe", 0, {{"Master", reference, "f", 18}}, 17},
        {"g", "Probe", 0, {}, 19},
    };
    document.Edges = {
        {"a", "out", "b", "in_1", 20}, {"f", "out", "b", "in_1", 21}, {"b", "uot", "f", "ni_1", 22},
        {"b", "out", "z", "in_1", 23}, {"b", "out", "b", "in_2", 24}, {"c", "out", "f", "in_1", 25},
        {"b", "out", "f", "in_1", 26}, {"f", "out", "a", "in_1", 27}, {"d", "out", "f", "in_2", 28},
        {"e", "o", "g", "in_1", 29},   {"g", "out", "e", "i", 30},
    };
    ProblemList problems;
    const MaterialGraph graph = LoadMaterial(document, ProbeMaker(), problems);
    EXPECT_EQ(
        FormatProblems(problems),
        "error node-failed: m.xml:12: node \"d\": no such luck\n"
        "warning unknown-type: m.xml:13: node \"e\": no plug-in offers the type \"Alien\"\n"
        "error doubled-id: m.xml:19: node \"g\": another node has this id already\n"
        "error bad-value: m.xml:2: node \"a\": property \"Width\": \"x\" is no integer value\n"
        "error doubled-property: m.xml:5: node \"a\": property with name \"Width\" already exists\n"
        "warning unknown-property: m.xml:6: node \"a\": the type \"Probe\" has no property "
        "\"Sheen\"; it is kept but has no effect\n"
        "error unknown-node: m.xml:7: node \"a\": there is no node \"nobody\"\n"
        "error property-mismatch: m.xml:4: node \"a\": cannot copy property \"Width\" from "
        "property with non-matching type\n"
        "error property-mismatch: m.xml:3: node \"a\": cannot copy property \"Float\" from "
        "property with non-matching type\n"
        "error properties-refused: m.xml:8: node \"b\": Cannot convert \"Probe\" version 1 "
        "properties into version 0 properties. Are you running with an old DLL?\n"
        "error reference-circle: m.xml:15: node \"f\": references run in a circle: \"f\" -> \"g\" "
        "-> \"f\"\n"
        "error ports-refused: m.xml:10: node \"c\": no ports\n"
        "error doubled-input: m.xml:21: input port \"in_1\" of node \"b\" has an edge already, so "
        "output port \"out\" of node \"f\" cannot feed it too\n"
        "error unknown-port: m.xml:22: node \"b\": node \"Probe\" (Probe): output port \"uot\" "
        "does not exist\n"
        "error unknown-port: m.xml:22: node \"f\": node \"Probe\" (Probe): input port \"ni_1\" "
        "does not exist\n"
        "error unknown-node: m.xml:23: there is no node \"z\"\n"
        "error self-edge: m.xml:24: node \"b\" cannot feed itself\n"
        "error edge-circle: m.xml:8: node \"b\": edges run in a circle: \"b\" -> \"f\" -> \"a\" -> "
        "\"b\"\n"
        "error edge-circle: m.xml:17: node \"g\": edges run in a circle: \"g\" -> \"e\" -> "
        "\"g\"\n");
    EXPECT_EQ(graph.Nodes().size(), 7u);
    EXPECT_EQ(graph.Edges().size(), 4u);
}

/// Documents full of circles end all the same.
TEST(MaterialLoader, GivesUpOnVeryManyCircles)
{
    MaterialDocument document;
    for (int i = 0; i < 2000; ++i) {
        const std::string one = std::to_string(2 * i);
        const std::string two = std::to_string(2 * i + 1);
        document.Nodes.push_back({one, "Probe", 0, {{"Master", reference, two, 0}}, 0});
        document.Nodes.push_back({two, "Probe", 0, {{"Master", reference, one, 0}}, 0});
        document.Edges.push_back({one, "out", two, "in_1", 0});
        document.Edges.push_back({two, "out", one, "in_1", 0});
    }
    ProblemList problems;
    const MaterialGraph graph = LoadMaterial(document, ProbeMaker(), problems);
    EXPECT_EQ(graph.Nodes().size(), 4000u);
    EXPECT_EQ(problems.Problems().size(), 202u);
}

MaterialDocument LoadAndSave(const MaterialDocument& document, const PluginSet& plugins)
{
    return SaveMaterial(LoadMaterial(document, plugins));
}

TEST(MaterialLoader, SavingGivesTheDocumentAgain)
{
    PluginSet plugins;
    plugins.Load(MOX_CORE_PLUGIN);
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::path(MOX_TEST_DATA) / "../examples")) {
        if (entry.path().extension() != ".xml")
            continue;
        const MaterialDocument document = ReadMaterialDocument(entry.path());
        EXPECT_EQ(FormatDocument(LoadAndSave(document, plugins)), FormatDocument(document));
        ++count;
    }
    EXPECT_GT(count, 3);

    // Values that nodes settle by themselves, other spellings, other orders, unknown things.
    MaterialDocument odd;
    odd.Description = {{"title", "odd"}};
    odd.RenderState = {{"cull", "none"}};
    odd.Bindings = {{"texture", "t", {{"file", "a.png"}}, 0}};
    odd.Nodes = {
        {"swizzle",
         "CoreSwizzle",
         -3,
         {{"Vector Type", GuiPropertyKind::Enum, "Uv", 0},
          {"PositionX", GuiPropertyKind::Float, "1.50", 0}},
         0},
        {"stated",
         "CoreSwizzle",
         0,
         {{"Component Count", GuiPropertyKind::Integer, "4", 0}, {"Later", text, "", 0}},
         0},
        {"copy", "CoreTexture", 0, {{"Reference", reference, "original", 0}}, 0},
        {"original",
         "CoreTexture",
         0,
         {{"Colour Type", GuiPropertyKind::Enum, "DXT5 Normal", 0}},
         0},
        {"lost",
         "Alien",
         9,
         {{"Twin", reference, "copy", 0},
          {"Description", text, "mine", 0},
          {"Level", GuiPropertyKind::Enum, "High", 0}},
         0},
    };
    odd.Edges = {{"lost", "a", "copy", "in_uv", 0}, {"copy", "out_colour", "lost", "b", 0}};
    odd.Edges.pop_back();
    EXPECT_EQ(FormatDocument(LoadAndSave(odd, plugins)), FormatDocument(odd));
}

/// One edited value is one changed line, and what its node does not own stays out.
TEST(MaterialLoader, SavingWritesWhatWasEdited)
{
    PluginSet plugins;
    plugins.Load(MOX_CORE_PLUGIN);
    MaterialGraph graph =
        LoadMaterial(ReadMaterialDocument(MOX_TEST_DATA "/../examples/flip_book.xml"), plugins);
    const std::string before = FormatDocument(SaveMaterial(graph));
    graph.SetProperty("thisFrame", "Alpha",
                      "true"); // "nextFrame" takes it over, but does not say so
    std::string expected = before;
    expected.insert(expected.find("node nextFrame"), "  Alpha bool true\n");
    EXPECT_EQ(FormatDocument(SaveMaterial(graph)), expected);
    graph.SetProperty("thisFrame", "Alpha", "false");
    EXPECT_EQ(FormatDocument(SaveMaterial(graph)), before);
}

} // namespace
