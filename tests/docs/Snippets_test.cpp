#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

const std::filesystem::path root = std::filesystem::path(MOX_TEST_DATA) / "..";

/// A snippet whose opening line names a file after the language must appear verbatim in that file.
TEST(Snippets, DocumentsShowTheCodeAsItIs)
{
    for (const char* document :
         {"README.md", "docs/embedding.md", "docs/engines.md", "docs/plugin-guide.md"}) {
        std::istringstream guide(ReadText(root / document));
        int count = 0;
        for (std::string line; std::getline(guide, line);) {
            if (line.substr(0, 3) != "```")
                continue;
            const std::size_t space = line.find(' ');
            const std::string file = space == line.npos ? "" : line.substr(space + 1);
            std::string snippet;
            while (std::getline(guide, line) && line != "```")
                snippet += line + "\n";
            if (file.empty())
                continue;
            ++count;
            EXPECT_NE(ReadText(root / file).find(snippet), std::string::npos)
                << file << " no longer contains:\n"
                << snippet;
        }
        EXPECT_GT(count, 1) << document;
    }
}

} // namespace
