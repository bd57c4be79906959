#include "tests/support/Session.h"

#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

std::vector<std::string> SessionNames(const std::string& room)
{
    std::vector<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(MOX_TEST_DATA "/" + room + "/sessions"))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

void ExpectSession(const std::string& name, const SessionAttempt& attempt)
{
    std::ifstream file(MOX_TEST_DATA "/" + name);
    std::string text;
    bool isProse = true;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("# ")) {
            text += (isProse ? "" : "\n") + line + "\n";
            isProse = true;
        }
        if (!line.starts_with("$ "))
            continue;
        isProse = false;
        text += line + "\n";
        std::string tried = line.substr(2);
        while (file.peek() == '>' && std::getline(file, line)) {
            text += line + "\n";
            tried += "\n" + line.substr(2);
        }
        const std::optional<std::string> outcome = attempt(tried);
        if (!outcome)
            return;
        text += *outcome;
    }
    EXPECT_FALSE(isProse) << name << " has nothing to try";
    ExpectGolden(name, text);
}
