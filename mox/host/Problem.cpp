#include "mox/host/Problem.h"

#include "mox/host/Excerpt.h"

#include <algorithm>

namespace Mox::Host {

const char* GetSeverityName(Severity severity)
{
    return severity == Severity::Error ? "error" : "warning";
}

std::string Problem::Format() const
{
    return MessageLine(Where.Format() + Message);
}

void ProblemList::Warn(ProblemRule rule, const Place& where, const std::string& message)
{
    _problems.push_back({Severity::Warning, rule.Word(), where, message});
}

void ProblemList::Fail(ProblemRule rule, const Place& where, const std::string& message)
{
    _problems.push_back({Severity::Error, rule.Word(), where, message});
}

void ProblemList::Fail(ProblemRule rule, const HostError& error)
{
    Fail(rule, error.Where, error.Message);
}

void ProblemList::Append(const ProblemList& other)
{
    _problems.insert(_problems.end(), other._problems.begin(), other._problems.end());
}

bool ProblemList::HasErrors() const
{
    return std::ranges::find(_problems, Severity::Error, &Problem::Level) != _problems.end();
}

void ProblemList::ThrowFirstError() const
{
    const auto first = std::ranges::find(_problems, Severity::Error, &Problem::Level);
    if (first != _problems.end())
        throw HostError(first->Where, first->Message);
}

} // namespace Mox::Host
