#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFileReader.h"
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

} // namespace
