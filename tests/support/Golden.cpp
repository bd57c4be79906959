#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

void ExpectGolden(const std::string& name, const std::string& text)
{
    const std::filesystem::path file = std::filesystem::path(MOX_TEST_DATA) / name;
    if (std::getenv("MOX_UPDATE_GOLDEN")) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    std::ifstream stream(file);
    ASSERT_TRUE(stream) << file << " is missing";
    std::ostringstream expected;
    expected << stream.rdbuf();
    EXPECT_EQ(text, expected.str()) << file;
}
