#include "tests/support/Golden.h"

#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

void ExpectGolden(const std::string& name, const std::string& text)
{
    const std::filesystem::path file = std::filesystem::path(MOX_TEST_DATA) / name;
    if (std::getenv("MOX_UPDATE_GOLDEN")) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    EXPECT_EQ(text, ReadText(file)) << file;
}
