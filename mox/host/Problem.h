#pragma once

#include "mox/host/HostError.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// All rules under which problems are reported. Build systems and baselines use these names, so
/// their meanings must not change; docs/checks.md explains them.
inline constexpr std::string_view problemRules[] = {
    // the document
    "unreadable",
    "not-well-formed",
    "encoding",
    "document-type",
    "processing-instruction",
    "too-deep",
    "too-many-attributes",
    "too-many-problems",
    "document-version",
    "schema",
    "doubled-id",
    "doubled-binding",
    "doubled-property",
    // nodes and edges
    "unknown-type",
    "no-placeholder",
    "unknown-property",
    "bad-value",
    "property-mismatch",
    "properties-refused",
    "ports-refused",
    "counts-refused",
    "precisions-refused",
    "unknown-node",
    "unknown-port",
    "self-edge",
    "doubled-input",
    "edge-circle",
    "reference-circle",
    "count-conflict",
    "open-input",
    "empty-grid",
    // bindings
    "name-no-cg-name",
    "name-reserved",
    "equal-bindings",
    "name-of-environment",
    "two-basic-colours",
    "missing-texture",
    "stray-binding",
    // programs
    "not-resolved",
    "node-failed",
    "edge-failed",
    "no-end",
    "two-ends",
    "fed-twice",
    "unfed-input",
    "circle",
    "environment",
    "stage-conflict",
    "cannot-cross",
    "too-many-interpolants",
    "two-types",
    "register-conflict",
    "too-many-registers",
    "compile",
    "export",
    "dead-node",
    "dependency-file",
    "name-too-long",
    "not-finite",
    "code",
    "two-helpers",
    "target",
    // node files
    "node-file",
    "node-twice",
    "node-default",
    "node-code",
    // environments
    "environment-file",
    "environment-code",
    "environment-value",
    "environment-hidden",
    "environment-unused",
    // other formats
    "interchange-file",
    "interchange-composed",
    "interchange-approximated",
    "interchange-dropped",
    // previews
    "material",
    "preview-stream",
    "preview-uniform",
    "preview-texture",
    "preview-colour",
};

/// One of problemRules. Any other string does not compile.
class ProblemRule
{
public:
    consteval ProblemRule(const char* word) : _word(word)
    {
        if (std::find(std::begin(problemRules), std::end(problemRules), _word) ==
            std::end(problemRules))
            throw "problemRules does not list this rule";
    }

    std::string Word() const { return std::string(_word); }

private:
    std::string_view _word;
};

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

    /// Formats the problem as "file:line: node "id": port "name": message" on one line, without the
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
