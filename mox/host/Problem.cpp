#include "mox/host/Problem.h"

#include "mox/host/Excerpt.h"

#include <algorithm>

namespace Mox::Host {

namespace {

bool IsError(const Problem& problem)
{
    return problem.Level == Severity::Error;
}

} // namespace

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
    return std::any_of(_problems.begin(), _problems.end(), IsError);
}

void ProblemList::ThrowFirstError() const
{
    const auto first = std::find_if(_problems.begin(), _problems.end(), IsError);
    if (first != _problems.end())
        throw HostError(first->Where, first->Message);
}

} // namespace Mox::Host
