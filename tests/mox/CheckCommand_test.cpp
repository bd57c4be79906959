#include "tests/support/RunMox.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

std::string WriteMaterial(const std::string& name, const std::string& body)
{
    const std::string file = testing::TempDir() + name;
    std::ofstream(file) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<material version=\"1\">\n"
                        << body << "\n</material>\n";
    return file;
}

/// One material with as many different faults as there are rules about nodes; none hides another.
const char* const faulty = R"(<nodes>
<node id="uv" type="CoreUv" version="0"><property name="Name" kind="string" value="2nd"/></node>
<node id="a" type="CoreTexture" version="0"><property name="Name" kind="string" value="float"/>
<property name="Basic Colour" kind="bool" value="true"/></node>
<node id="b" type="CoreTexture" version="0"><property name="Name" kind="string" value="rock"/>
<property name="Basic Colour" kind="bool" value="true"/></node>
<node id="c" type="CoreConstant" version="0"><property name="Name" kind="string" value="rock"/></node>
<node id="grid" type="CoreAnimatedUv" version="0"><property name="Rows" kind="integer" value="0"/></node>
<node id="bad" type="CoreMaths" version="0"><property name="Function" kind="enum" value="Sine"/></node>
<node id="rim" type="CoreMaths" version="0"><property name="Function" kind="enum" value="Fresnel"/></node>
<node id="lost" type="StudioWobble" version="0"/>
</nodes>
<edges>
<edge tail="uv" tailPort="read" head="a" headPort="in_uv"/>
<edge tail="uv" tailPort="read" head="b" headPort="in_st"/>
<edge tail="uv" tailPort="read" head="nobody" headPort="in_uv"/>
</edges>
<bindings>
<binding stream="texture" tag="rock" default="no such file.png"/>
<binding stream="uv" tag="gone" default="map1"/>
</bindings>)";

TEST(CheckCommand, FindsAllProblemsInOneGo)
{
    const std::string file = WriteMaterial("faulty.xml", faulty);
    const Outcome outcome = RunMox("check --json " + file);
    EXPECT_EQ(outcome.Status, 1);
    std::map<std::string, std::string> found;
    for (const auto& problem : nlohmann::json::parse(outcome.Text)) {
        EXPECT_EQ(problem["file"], file);
        EXPECT_GT(problem["line"], 0) << problem;
        found[problem["rule"]] += problem.value("node", "-") + " ";
    }
    const std::map<std::string, std::string> expected = {
        {"property-mismatch", "bad "}, {"empty-grid", "grid "},        {"equal-bindings", "c "},
        {"unknown-node", "- "},        {"missing-texture", "- "},      {"name-no-cg-name", "uv "},
        {"name-reserved", "a "},       {"node-failed", "b rim lost "}, {"open-input", "grid grid "},
        {"stray-binding", "- "},       {"two-basic-colours", "b "},    {"unknown-port", "b "},
        {"unknown-type", "lost "},
    };
    EXPECT_EQ(found, expected) << outcome.Text;
}

TEST(CheckCommand, StatusGoesBySeverity)
{
    EXPECT_EQ(RunMox("check ../examples/tinted_texture.xml").Status, 0);
    EXPECT_EQ(RunMox("check ../examples/two_maths.xml").Status, 0);
    EXPECT_EQ(RunMox("check --strict ../examples/two_maths.xml").Status, 1);
    EXPECT_EQ(RunMox("check nowhere.xml").Status, 1);
    EXPECT_EQ(RunMox("check --json --sarif ../examples/two_maths.xml").Status, 2);
    const Outcome text = RunMox("check ../examples/two_maths.xml");
    EXPECT_EQ(text.Text,
              "../examples/two_maths.xml: warning: nothing reaches the surface: no edge leads to a "
              "node that ends the material, such as a \"Surface\" node [no-end]\n");
    const auto sarif = nlohmann::json::parse(RunMox("check --sarif ../examples").Text);
    EXPECT_EQ(sarif["runs"][0]["results"][0]["ruleId"], "no-end");
}

TEST(DiffCommand, SaysWhatChanged)
{
    const std::string one =
        WriteMaterial("one.xml", R"(<nodes><node id="a" type="CoreMaths" version="0">
        <property name="Default Blend" kind="float" value="0.5"/></node></nodes><edges/>)");
    const std::string same = WriteMaterial(
        "same.xml", R"(<nodes><node id="a" type="CoreMaths" version="0"/></nodes><edges/>)");
    const std::string other =
        WriteMaterial("other.xml", R"(<nodes><node id="a" type="CoreMaths" version="0">
        <property name="Default Blend" kind="float" value="1.0"/></node></nodes><edges/>)");
    EXPECT_EQ(RunMox("diff " + one + " " + same).Text, "");
    EXPECT_EQ(RunMox("diff " + one + " " + same).Status, 0);
    const Outcome differ = RunMox("diff " + one + " " + other);
    EXPECT_EQ(differ.Status, 1);
    EXPECT_EQ(differ.Text,
              "node \"a\" (CoreMaths): \"Default Blend\" changed from \"0.5\" to \"1\"\n");
    const Outcome trouble = RunMox("diff " + one + " nowhere.xml");
    EXPECT_EQ(trouble.Status, 2);
    EXPECT_EQ(trouble.Text, "mox: nowhere.xml: cannot be read: No such file or directory\n");
}

TEST(FormatCommand, BringsDocumentsIntoTheOneForm)
{
    const std::string file = WriteMaterial("format.xml", faulty);
    EXPECT_EQ(RunMox("format --check " + file).Text, file + "\n");
    EXPECT_EQ(RunMox("format " + file).Status, 0);
    const auto written = std::filesystem::last_write_time(file);
    EXPECT_EQ(RunMox("format --check " + file).Status, 0);
    EXPECT_EQ(RunMox("format " + file).Status, 0);
    EXPECT_EQ(std::filesystem::last_write_time(file), written);
    const Outcome problems = RunMox("check " + file);
    EXPECT_NE(problems.Text.find("StudioWobble"), std::string::npos) << "nothing is lost";
}

#ifdef MOX_HAS_COMPILER
TEST(ExportTargets, WriteEveryLanguageWithAReflection)
{
    const std::string folder = testing::TempDir() + "targets";
    const Outcome outcome = RunMox("export ../examples/rim_light.xml -o '" + folder +
                                   "' --target cg,hlsl,glsl,glsl-vulkan,essl,msl,spirv");
    ASSERT_EQ(outcome.Status, 0) << outcome.Text;
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_GT(entry.file_size(), 100u);
        ++count;
    }
    EXPECT_EQ(count, 15);
    std::ifstream reflection(folder + "/rim_light.reflection.json");
    EXPECT_FALSE(nlohmann::json::parse(reflection).empty());

    const std::string broken = WriteMaterial("grid.xml", R"(<nodes>
<node id="uv" type="CoreUv" version="0"/>
<node id="grid" type="CoreAnimatedUv" version="0"><property name="Rows" kind="integer" value="0"/></node>
<node id="t" type="CoreTexture" version="0"/><node id="s" type="Surface" version="0"/></nodes><edges>
<edge tail="uv" tailPort="read" head="grid" headPort="in_uv"/>
<edge tail="grid" tailPort="out_uv1" head="t" headPort="in_uv"/>
<edge tail="t" tailPort="out_colour" head="s" headPort="in_colour"/></edges>)");
    for (const char* command : {"export --target glsl ", "check "}) {
        const Outcome failure = RunMox(command + broken);
        EXPECT_EQ(failure.Status, 1);
        EXPECT_NE(failure.Text.find("node \"grid\": does not compile"), std::string::npos)
            << failure.Text;
    }
}
#endif

TEST(ExportByContent, StoresEqualProgramsOnce)
{
    const std::string folder = testing::TempDir() + "by_content";
    std::filesystem::create_directories(folder + "/in");
    for (const char* name : {"a", "b", "c"})
        std::filesystem::copy_file(MOX_EXAMPLES "/rim_light.xml", folder + "/in/" + name + ".xml",
                                   std::filesystem::copy_options::overwrite_existing);
    const Outcome outcome = RunMox("export " + folder + "/in -o " + folder + "/out --by-content");
    EXPECT_EQ(outcome.Text, "mox: 3 exported, 1 distinct, 0 failed, 0 warnings\n");
    const auto files = [](const std::string& path) {
        return std::distance(std::filesystem::directory_iterator(path), {});
    };
    EXPECT_EQ(files(folder + "/out/programs"), 2);
    std::ifstream names(folder + "/out/a.programs");
    std::string name;
    ASSERT_TRUE(std::getline(names, name));
    EXPECT_TRUE(std::filesystem::exists(folder + "/out/programs/" + name));
}

} // namespace
