// Arbitrary environments: each is refused with a place and a one-line message, or all its problems
// are found. The input is the manifest, followed by a null byte and the file a.cg.

#include "mox/check/EnvironmentCheck.h"
#include "mox/host/Excerpt.h"
#include "tests/support/Claim.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <string>

using namespace Mox::Host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFolder folder;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t zero = std::min(input.find('\0'), size);
    folder.Write("environment.xml", input.substr(0, zero));
    folder.Write("a.cg", input.substr(std::min(zero + 1, size)));
    ProblemList problems;
    try {
        CheckEnvironment(ReadEnvironment(folder.Path()), problems);
    } catch (const HostError& error) {
        problems.Fail("environment-file", error);
    }
    for (const Problem& problem : problems.Problems()) {
        Claim(problem.Where.File.starts_with(folder.Path().string()), "a problem names its file");
        Claim(!problem.Message.empty(), "a problem has a reason");
        Claim(MessageLine(problem.Format()).size() < 5000, "a problem is one line to read");
    }
    return 0;
}
