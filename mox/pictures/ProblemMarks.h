#pragma once

#include "mox/host/Problem.h"

#include <map>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Mox::Host {

/// The problems of one item in a diagram.
struct ProblemMark
{
    bool IsProblem = false;
    Severity Level = Severity::Warning; ///< of the most severe problem
    std::string Text;                   ///< the messages, one per line

    void Add(Severity level, const std::string& message);
};

/// Problems by the node and the port that they belong to.
class ProblemMarks
{
public:
    /// @param problems must outlive this object
    explicit ProblemMarks(const ProblemList& problems);

    /// Returns all problems of a node, including those of its ports.
    const ProblemMark& OfNode(const std::string& id) const;

    const ProblemMark& OfPort(const std::string& id, const std::string& port) const;

    /// Returns the problems of the material as a whole, and those of nodes that are not drawn, each
    /// as a separate mark.
    std::vector<ProblemMark> Elsewhere(const std::unordered_set<std::string>& drawnIds) const;

private:
    const ProblemList& _problems;
    std::map<std::string, ProblemMark> _nodes;
    std::map<std::pair<std::string, std::string>, ProblemMark> _ports;
};

} // namespace Mox::Host
