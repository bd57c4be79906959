#include "tests/support/Golden.h"
#include "tests/support/RunMox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

namespace {

TEST(Program, ExportsTheExample)
{
    const Outcome outcome = RunMox("export --shader-graph ../examples/two_maths.xml");
    EXPECT_EQ(outcome.Status, 0);
    ExpectGolden("mox/two_maths.txt", outcome.Text);
}

/// Lines that are no warnings.
int CountErrors(const std::string& text)
{
    std::istringstream lines(text);
    int count = 0;
    for (std::string line; std::getline(lines, line);)
        count += line.starts_with("mox: warning: ") ? 0 : 1;
    return count;
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
        EXPECT_EQ(CountErrors(outcome.Text), 1);
        ExpectGolden(stem + ".txt", outcome.Text);
    }
    EXPECT_GT(count, 10);
}

std::string Write(const std::string& name, const std::string& text)
{
    const std::string file = testing::TempDir() + name;
    std::ofstream(file) << text;
    return file;
}

TEST(Program, BindingsReadBackAreTheSame)
{
    for (const char* example :
         {"flip_book", "layers_by_vertex_colour", "one_texture_twice", "tinted_texture"}) {
        SCOPED_TRACE(example);
        const Outcome first = RunMox("bindings ../examples/" + std::string(example) + ".xml");
        EXPECT_EQ(first.Status, 0);
        EXPECT_NE(first.Text.find("<binding stream="), std::string::npos);
        const Outcome again = RunMox("bindings --read " + Write("bindings.xml", first.Text));
        EXPECT_EQ(again.Status, 0);
        EXPECT_EQ(again.Text, first.Text);
    }
    // What the reader makes of an odd document is what it prints, and that stays.
    const std::string odd = Write("odd.xml", R"(<?b c?><bindings version="1"><!-- d -->
        <binding count="3" stream="float" tag="t&#10;u" gui="SLIDER" min="1,2x" max="z"/>
        <binding count="1" stream="blendweights" tag="w" stream_type="Byte" other="dropped"/>
    </bindings>)");
    EXPECT_EQ(RunMox("bindings --read " + odd).Text,
              R"(<?xml version="1.0" encoding="UTF-8"?>
<bindings version="1">
  <binding stream="float" count="3" tag="t&#10;u" gui="slider" min="1, 2, 2"/>
  <binding stream="blendweights" count="1" tag="w" stream_type="u8n"/>
</bindings>
)");
}

TEST(Program, BadBindingsDocumentsGiveOneClearLine)
{
    struct Case
    {
        const char* Content; ///< within a root element of version 1, on its second line
        const char* Message;
    };
    constexpr Case cases[] = {
        {"<binding stream='fly' count='1'/>", "2: there is no stream type \"fly\""},
        {"<binding stream='invalid' count='1'/>", "2: there is no stream type \"invalid\""},
        {"<binding count='1'/>", "2: failed to find \"stream\" attribute on \"binding\" element"},
        {"<binding stream='uv'/>", "2: failed to find \"count\" attribute on \"binding\" element"},
        {"<binding stream='uv' count='0'/>", "2: \"0\" is no count from 1 to 1024"},
        {"<binding stream='uv' count='4000000000'/>",
         "2: \"4000000000\" is no count from 1 to 1024"},
        {"<!-- a\n -->\n<binding stream='texture' count='1' srgb='yes'/>",
         "4: attribute \"srgb\" contains invalid boolean data \"yes\""},
        {"<binding stream='uv' count='1'><uv/></binding>", "2: a <binding> element must be empty"},
        {"<uv/>", "2: only <binding> elements are allowed here"},
        {"<binding stream='uv' count='1' tag='\xff'/>",
         "2: Input is not proper UTF-8, indicate encoding !"},
        {"<binding stream='uv' count='1' tag='&#1;'/>",
         "2: xmlParseCharRef: invalid xmlChar value 1"},
    };
    for (const Case& c : cases) {
        const std::string file =
            Write("bad.xml", "<bindings version='1'>\n" + std::string(c.Content) + "</bindings>");
        const Outcome outcome = RunMox("bindings --read " + file);
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_EQ(outcome.Text, "mox: " + file + ":" + c.Message + "\n");
    }
    constexpr Case documents[] = {
        {"", "1: Document is empty"},
        {"<bindings version='2'/>",
         "1: bindings version \"2\" is not supported; this program reads version 1"},
        {"<bindings/>", "1: failed to find \"version\" attribute on \"bindings\" element"},
        {"<material version='1'/>", "1: the root element is not <bindings>"},
        {"<!DOCTYPE bindings [<!ENTITY a 'b'>]><bindings version='1'/>",
         " document type declarations are not allowed"},
    };
    for (const Case& c : documents) {
        const std::string file = Write("bad.xml", c.Content);
        EXPECT_EQ(RunMox("bindings --read " + file).Text, "mox: " + file + ":" + c.Message + "\n");
    }
}

TEST(Program, NewNodesAndTheCatalogue)
{
    const Outcome node = RunMox("new CoreConstant --id tint");
    EXPECT_EQ(node.Status, 0);
    const std::string file = Write("new.xml", "<material version='1'><nodes>" + node.Text +
                                                  "</nodes><edges/></material>");
    EXPECT_NE(RunMox("bindings " + file).Text.find("tag=\"Constant\" gui=\"colour\""),
              std::string::npos);
    const Outcome unknown = RunMox("new nothing");
    EXPECT_EQ(unknown.Status, 1);
    EXPECT_EQ(unknown.Text, "mox: no plug-in offers the type \"nothing\"\n");
    EXPECT_EQ(RunMox("new CoreUv --id \"$(printf '\\001')\"").Text,
              "mox: cannot be written: attribute \"id\" has a character that XML cannot hold\n");

    ExpectGolden("mox/catalogue.txt", RunMox("catalogue").Text);
    const auto rows = nlohmann::json::parse(RunMox("catalogue --json").Text);
    ASSERT_EQ(rows.size(), 16u);
    EXPECT_EQ(rows[0]["listed"], false);
    const auto& reference = rows[3]["properties"][8];
    EXPECT_EQ(reference["name"], "Reference");
    EXPECT_EQ(reference["kind"], "node");
    EXPECT_TRUE(reference["default"].is_null());
    EXPECT_EQ(reference["choices"], nlohmann::json({"CoreTexture"}));
    EXPECT_EQ(rows[3]["inputs"],
              nlohmann::json::parse(
                  R"([{"name":"in_uv","label":"uv","components":2,"precision":"float"}])"));
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
          "export -j 0 -o o x.xml", "export -j some -o o x.xml", "export --target spirv x.xml",
          "export --shader-graph --target cg x.xml", "completion csh"})
        EXPECT_EQ(RunMox(arguments).Status, 2) << arguments;
    EXPECT_EQ(RunMox("fly away").Text,
              "mox: \"fly\" was not expected\nRun with --help for more information.\n");
    EXPECT_EQ(RunMox("--help").Status, 0);
    EXPECT_EQ(RunMox("export ../examples/two_maths.xml > /dev/full").Status, 1);
    EXPECT_EQ(RunMox("check nowhere.xml > /dev/full").Text, "mox: the output cannot be written\n");
}

} // namespace
