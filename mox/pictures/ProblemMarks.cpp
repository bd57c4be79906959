#include "mox/pictures/ProblemMarks.h"

namespace Mox::Host {

namespace {

/// Returns the mark for a key, or an empty mark.
template <class Marks>
const ProblemMark& Find(const Marks& marks, const typename Marks::key_type& key)
{
    static const ProblemMark none;
    const auto mark = marks.find(key);
    return mark == marks.end() ? none : mark->second;
}

} // namespace

void ProblemMark::Add(Severity level, const std::string& message)
{
    if (!IsProblem || level == Severity::Error)
        Level = level;
    IsProblem = true;
    Text += (Text.empty() ? "" : "\n") + message;
}

ProblemMarks::ProblemMarks(const ProblemList& problems) : _problems(problems)
{
    for (const Problem& problem : problems.Problems()) {
        const Place& where = problem.Where;
        const Place port{{}, 0, {}, where.Port};
        _nodes[where.Node].Add(problem.Level, port.Format() + problem.Message);
        if (!where.Port.empty())
            _ports[{where.Node, where.Port}].Add(problem.Level, problem.Message);
    }
}

const ProblemMark& ProblemMarks::OfNode(const std::string& id) const
{
    return Find(_nodes, id);
}

const ProblemMark& ProblemMarks::OfPort(const std::string& id, const std::string& port) const
{
    return Find(_ports, {id, port});
}

std::vector<ProblemMark>
ProblemMarks::Elsewhere(const std::unordered_set<std::string>& drawnIds) const
{
    std::vector<ProblemMark> all;
    for (const Problem& problem : _problems.Problems()) {
        const Place where{{}, 0, problem.Where.Node, problem.Where.Port};
        if (!drawnIds.contains(where.Node))
            all.push_back({true, problem.Level, where.Format() + problem.Message});
    }
    return all;
}

} // namespace Mox::Host
