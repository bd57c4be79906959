#pragma once

#include "mox/host/HostError.h"
#include "mox/host/ProblemRule.h"

#include <string>
#include <vector>

namespace Mox::Host {

enum class Severity
{
    Warning, ///< the material can be exported, but somebody should look at it
    Error,   ///< the material cannot be exported as it stands
};

/// "warning" or "error".
const char* GetSeverityName(Severity severity);

/// One thing that is wrong with a material.
struct Problem
{
    Severity Level = Severity::Error;
    std::string Rule; ///< one of problemRules, such as "unknown-port"
    Place Where;
    std::string Message;

    /// "file:line: node "id": port "name": message", as far as the place is known: one line, the
    /// end of which is cut if it is very long.
    std::string Format() const;
};

/// What was found on the way through a material, in the order of finding. Work goes on behind a
/// problem as far as it makes sense, so that one does not hide the others.
class ProblemList
{
public:
    void Warn(ProblemRule rule, const Place& where, const std::string& message);
    void Fail(ProblemRule rule, const Place& where, const std::string& message);

    /// Takes over a failure of the host.
    void Fail(ProblemRule rule, const HostError& error);

    void Add(const Problem& problem) { _problems.push_back(problem); }

    /// Takes over the problems of a step that kept a list of its own.
    void Append(const ProblemList& other);

    bool HasErrors() const;
    const std::vector<Problem>& Problems() const { return _problems; }

    /// For callers that stop at the first error.
    /// @throws HostError with the first error, if there is one
    void ThrowFirstError() const;

private:
    std::vector<Problem> _problems;
};

/// What a call returns that takes a list for problems, for callers that stop at the first error.
/// @throws HostError with it
template <class Call>
auto WithoutErrors(Call call)
{
    ProblemList problems;
    auto result = call(problems);
    problems.ThrowFirstError();
    return result;
}

} // namespace Mox::Host
