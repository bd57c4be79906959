#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

std::string ReadText(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file << " is missing";
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::filesystem::path> ExampleDocuments()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(MOX_EXAMPLES)) {
        if (entry.path().extension() == ".xml")
            files.push_back(entry.path());
    }
    EXPECT_GT(files.size(), 5u);
    return files;
}
