#pragma once

#include "mox/host/HostError.h"
#include "mox/host/ProblemRule.h"

#include <string>
#include <vector>

namespace Mox::Host {

enum class Severity
{
    Warning, ///< the material can be exported, but should be checked
    Error,   ///< the material cannot be exported in its current state
};

/// Returns "warning" or "error".
const char* GetSeverityName(Severity severity);

/// A problem in a material.
struct Problem
{
    Severity Level = Severity::Error;
    std::string Rule; ///< one of problemRules, such as "unknown-port"
    Place Where;
    std::string Message;

    /// Formats the problem as "file:line: node "id": port "name": message" in one line, without the
    /// unknown parts of the location. A very long line is truncated.
    std::string Format() const;
};

/// The problems found while processing a material, in order. Processing continues after a problem
/// as far as possible, so that one problem does not hide the others.
class ProblemList
{
public:
    void Warn(ProblemRule rule, const Place& where, const std::string& message);
    void Fail(ProblemRule rule, const Place& where, const std::string& message);

    /// Adds an error of the host.
    void Fail(ProblemRule rule, const HostError& error);

    void Add(const Problem& problem) { _problems.push_back(problem); }

    /// Adds the problems of a step that has its own list.
    void Append(const ProblemList& other);

    bool HasErrors() const;
    const std::vector<Problem>& Problems() const { return _problems; }

    /// Throws the first error, for callers that stop at it.
    /// @throws HostError with the first error, if there is one
    void ThrowFirstError() const;

private:
    std::vector<Problem> _problems;
};

/// Returns the result of a call that accepts a problem list, for callers that stop at the first
/// error.
/// @throws HostError with that error
template <class Call>
auto WithoutErrors(Call call)
{
    ProblemList problems;
    auto result = call(problems);
    problems.ThrowFirstError();
    return result;
}

} // namespace Mox::Host
