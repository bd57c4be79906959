#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFileReader.h"
#include "tests/support/Failure.h"
#include "tests/support/SchemaVerdict.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace Mox::Host;

namespace {

std::vector<std::filesystem::path> GoodFiles()
{
    std::vector<std::filesystem::path> files;
    for (const char* folder : {MOX_NODE_FILES, MOX_TEST_DATA "/mox/nodes"}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            files.push_back(entry.path());
    }
    return files;
}

bool IsRead(const std::string& text)
{
    try {
        ParseNodeFile("node.xml", text);
        return true;
    } catch (const HostError& error) {
        EXPECT_EQ(error.Where.File, "node.xml");
        EXPECT_GT(error.Where.Line, 0) << error.what();
        return false;
    }
}

/// The positions of attribute and element names in a document.
std::vector<std::size_t> FindNames(const std::string& text)
{
    std::vector<std::size_t> places;
    for (std::size_t at = text.find_first_of(" <"); at != std::string::npos;
         at = text.find_first_of(" <", at + 1)) {
        const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyzV", at + 1);
        const bool isAttribute = text[at] == ' ' && text.compare(end, 2, "=\"") == 0;
        const bool isLeaf = text[at] == '<' && end > at + 1 && text[end] == ' ' &&
                            text.find("/>", end) < text.find('<', end);
        if (end != std::string::npos && (isAttribute || isLeaf))
            places.push_back(at + 1);
    }
    return places;
}

TEST(NodeFile, AnswersAsItsSchema)
{
    for (const auto& file : GoodFiles()) {
        const std::string text = ReadFile(file);
        EXPECT_TRUE(IsRead(text)) << file;
        EXPECT_TRUE(FollowsSchema(text, MOX_NODE_SCHEMA)) << file;
        for (const std::size_t place : FindNames(text)) {
            std::string broken = text;
            broken.insert(place, "un");
            EXPECT_FALSE(IsRead(broken)) << file << text.substr(place, 30);
            EXPECT_FALSE(FollowsSchema(broken, MOX_NODE_SCHEMA)) << file << text.substr(place, 30);
        }
    }
}

TEST(NodeFile, RefusesBadIconsAndRepeatedHelp)
{
    const struct
    {
        const char* Part;
        const char* Failure;
        bool FollowsSchema;
    } cases[] = {
        {R"(<icon>"1 1 1 1" "a c None" "a"</icon>)", "no failure", true},
        {R"(<icon>"1 1 1 1", " c None", /* black */ " " };</icon>)", "no failure", true},
        {R"(<icon/>)", "<icon> is empty", false},
        {R"(<icon>1 1 1 1</icon>)", "row 1 of the icon is missing", false},
        {R"(<icon>"1 1 1 1" "a c None</icon>)", "row 2 of the icon has no closing quotation mark",
         false},
        {"<icon>\"1 1\n1 1\" \"a c None\" \"a\"</icon>",
         "row 1 of the icon has no closing quotation mark", false},
        {R"(<icon>"1 2 1 1" "a c None" "a"</icon>)", "row 4 of the icon is missing", true},
        {R"(<icon>"1 1 1 1" "a c" "a"</icon>)", "row 2 of the icon has no colour", true},
        {R"(<icon>"2 1 1 1" "a c None" "a"</icon>)", "row 3 of the icon is too short", true},
        {R"(<icon>"1 -1 1 1" "a c None" "a"</icon>)", "and key length: \"1 -1 1 1\"", true},
        {R"(<icon>"1 1 1 99999" "a c None" "a"</icon>)", "and key length: \"1 1 1 99999\"", true},
        {R"(<icon>"1 1 1 1" "a c None" "b"</icon>)",
         "row 3 of the icon contains a pixel with an undefined colour key", true},
        {R"(<icon>"1 1 1 1" "a c None" "a"</icon><icon>"1 1 1 1" "a c None" "a"</icon>)",
         "a node can have only one <icon>", false},
        {"<help>One.</help><help>Two.</help>", "a node can have only one <help>", false},
    };
    for (const auto& [part, failure, followsSchema] : cases) {
        const std::string text =
            Mox::Materials::Compose(R"(<node version="1" type="AbC" label="L" library="Ab">
<out name="out_value" label="out"/><body>out_value = 1.0;</body>
)",
                                    part, "</node>");
        const std::string found = HostFailureOf([&] { ParseNodeFile("node.xml", text); });
        EXPECT_TRUE(found.ends_with(failure)) << part << found;
        EXPECT_TRUE(found == "no failure" || found.starts_with("node.xml:3: ")) << part << found;
        EXPECT_EQ(FollowsSchema(text, MOX_NODE_SCHEMA), followsSchema) << part;
    }
}

} // namespace
