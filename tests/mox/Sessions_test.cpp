#include "tests/support/Session.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace {

/// Runs a shell command.
/// @param output receives standard output and standard error
/// @returns the command's exit status
int RunShell(const std::string& command, std::string& output)
{
    FILE* pipe = popen(("{ " + command + "\n} 2>&1").c_str(), "r");
    if (!pipe)
        return -1;
    std::array<char, 4096> buffer;
    while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), size);
    return WEXITSTATUS(pclose(pipe));
}

/// A file in tests/mox/sessions contains shell commands with their output and, if it is not 0,
/// their exit status in brackets. The commands share one folder, initially empty; "$tests" and
/// "$examples" are folders of the source tree. A command that exits with 80 skips the rest of the
/// session because it is not supported here.
class Sessions : public testing::TestWithParam<std::string>
{};

TEST_P(Sessions, GoAsWritten)
{
    const TemporaryFolder folder;
    const std::string settings = "cd '" + folder.Path().string() +
                                 "'; export LC_ALL=C tests='" MOX_TEST_DATA
                                 "' examples='" MOX_EXAMPLES "' bin=\"$(dirname '" MOX_PROGRAM
                                 "')\"; PATH=\"$bin:$PATH\"\n";
    bool isEverythingHere = true;
    const auto run = [&](const std::string& command) -> std::optional<std::string> {
        std::string text;
        const int status = RunShell(settings + command, text);
        isEverythingHere = status != 80;
        if (!isEverythingHere)
            return {};
        if (!text.empty() && !text.ends_with("\n"))
            text += "\n";
        if (status != 0)
            text += "[" + std::to_string(status) + "]\n";
        return text;
    };
    ExpectSession("mox/sessions/" + GetParam() + ".txt", run);
    if (!isEverythingHere)
        GTEST_SKIP() << "this machine or build lacks something";
}

INSTANTIATE_TEST_SUITE_P(Mox, Sessions, testing::ValuesIn(SessionNames("mox")),
                         [](const auto& session) { return session.param; });

} // namespace
