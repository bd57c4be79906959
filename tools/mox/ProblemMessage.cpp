#include "ProblemMessage.h"

#include "mox/Text.h"

namespace Mox::Tool {

std::string FormatMessage(const Host::Problem& problem)
{
    return Materials::Compose("mox: ", problem.Level == Host::Severity::Warning ? "warning: " : "",
                              problem.Format());
}

} // namespace Mox::Tool
