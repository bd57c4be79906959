#pragma once

#include "mox/host/Problem.h"

#include <map>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Mox::Host {

/// What is wrong with one thing in a picture.
struct ProblemMark
{
    bool IsProblem = false;
    Severity Level = Severity::Warning; ///< of the worst problem
    std::string Text;                   ///< the messages, a line each

    void Add(Severity level, const std::string& message);
};

/// Problems by the node and the port that they belong to.
class ProblemMarks
{
public:
    /// @param problems is kept by reference
    explicit ProblemMarks(const ProblemList& problems);

    /// All problems of a node, those of its ports included.
    const ProblemMark& OfNode(const std::string& id) const;

    const ProblemMark& OfPort(const std::string& id, const std::string& port) const;

    /// Problems of the material as a whole, and of nodes that are not among those drawn, each by
    /// itself.
    std::vector<ProblemMark> Elsewhere(const std::unordered_set<std::string>& drawnIds) const;

private:
    const ProblemList& _problems;
    std::map<std::string, ProblemMark> _nodes;
    std::map<std::pair<std::string, std::string>, ProblemMark> _ports;
};

} // namespace Mox::Host
