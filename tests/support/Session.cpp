#include "tests/support/Session.h"

#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <fstream>

void ExpectSession(const std::string& name,
                   const std::function<std::string(const std::string& line)>& attempt)
{
    std::ifstream file(MOX_TEST_DATA "/" + name);
    std::string text;
    int count = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("> ") || line.starts_with("# "))
            text += line + "\n";
        if (line.starts_with("> ")) {
            text += attempt(line.substr(2));
            ++count;
        }
    }
    EXPECT_GT(count, 0) << name << " has nothing to try";
    ExpectGolden(name, text);
}
