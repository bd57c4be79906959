#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

const std::filesystem::path root = std::filesystem::path(MOX_TEST_DATA) / "..";

std::string TextOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    EXPECT_TRUE(stream) << file << " is missing";
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

/// A snippet whose opening line names a file after its language stands word for word in that file.
TEST(Snippets, PluginGuideShowsTheCodeAsItIs)
{
    std::istringstream guide(TextOf(root / "docs/plugin-guide.md"));
    int count = 0;
    for (std::string line; std::getline(guide, line);) {
        if (line.substr(0, 3) != "```")
            continue;
        const std::size_t blank = line.find(' ');
        const std::string file = blank == line.npos ? "" : line.substr(blank + 1);
        std::string snippet;
        while (std::getline(guide, line) && line != "```")
            snippet += line + "\n";
        if (file.empty())
            continue;
        ++count;
        EXPECT_NE(TextOf(root / file).find(snippet), std::string::npos)
            << file << " has no longer:\n"
            << snippet;
    }
    EXPECT_GT(count, 5);
}

} // namespace
