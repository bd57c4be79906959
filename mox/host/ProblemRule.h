#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

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

} // namespace Mox::Host
