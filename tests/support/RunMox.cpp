#include "tests/support/RunMox.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>

Outcome RunMox(const std::string& arguments, const std::string& environment)
{
    return RunShell("cd '" MOX_TEST_DATA "' && " + environment + " '" MOX_PROGRAM "' " + arguments);
}

Outcome RunShell(const std::string& command)
{
    FILE* pipe = popen(("{ " + command + "\n} 2>&1").c_str(), "r");
    if (!pipe)
        return {-1, "popen failed"};
    Outcome outcome{};
    std::array<char, 4096> buffer;
    while (const std::size_t size = fread(buffer.data(), 1, buffer.size(), pipe))
        outcome.Text.append(buffer.data(), size);
    outcome.Status = WEXITSTATUS(pclose(pipe));
    return outcome;
}
