#include "tests/support/Golden.h"
#include "tests/support/RunMox.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

std::vector<std::string> SessionNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MOX_TEST_DATA "/mox/sessions"))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// A file of tests/mox/sessions: lines of prose ("# "), commands for a shell ("$ ", further lines
/// with "> ") and what each prints, with its status in brackets unless that is 0. The commands run
/// in one folder, empty at first, where "$tests" and "$examples" lead to the tree. One that ends
/// with 80 says that the rest cannot be had here.
class Sessions : public testing::TestWithParam<std::string>
{
protected:
    Outcome Run(const std::string& command) const
    {
        return RunShell("cd '" + _folder.Path().string() +
                        "'; export LC_ALL=C tests='" MOX_TEST_DATA "' examples='" MOX_EXAMPLES
                        "' bin=\"$(dirname '" MOX_PROGRAM "')\"; PATH=\"$bin:$PATH\"\n" +
                        command);
    }

private:
    TemporaryFolder _folder;
};

TEST_P(Sessions, GoAsWritten)
{
    const std::string name = "mox/sessions/" + GetParam() + ".txt";
    std::ifstream session(std::filesystem::path(MOX_TEST_DATA) / name);
    std::string text;
    bool isProse = true;
    for (std::string line; std::getline(session, line);) {
        if (line.starts_with("# ")) {
            text += (isProse ? "" : "\n") + line + "\n";
            isProse = true;
        }
        if (!line.starts_with("$ "))
            continue;
        isProse = false;
        text += line + "\n";
        std::string command = line.substr(2);
        while (session.peek() == '>' && std::getline(session, line)) {
            text += line + "\n";
            command += "\n" + line.substr(2);
        }
        const Outcome outcome = Run(command);
        if (outcome.Status == 80)
            GTEST_SKIP() << outcome.Text;
        text += outcome.Text;
        if (!text.ends_with("\n"))
            text += "\n";
        if (outcome.Status != 0)
            text += "[" + std::to_string(outcome.Status) + "]\n";
    }
    ExpectGolden(name, text);
}

INSTANTIATE_TEST_SUITE_P(Mox, Sessions, testing::ValuesIn(SessionNames()),
                         [](const auto& session) { return session.param; });

} // namespace
