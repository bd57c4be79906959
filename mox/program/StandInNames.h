#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <boost/noncopyable.hpp>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Host {

/// While it lives, nodes whose binding names are no Cg names bear stand-ins that are, since a node
/// refuses to make a parameter of such a name. No two names share a stand-in.
class StandInNames : private boost::noncopyable
{
public:
    /// @param problems takes each node that does not say whether it has a binding
    StandInNames(const MaterialGraph& graph, ProblemList& problems);
    ~StandInNames();

    /// From a stand-in to the name that it stands for.
    const std::map<std::string, std::string>& Originals() const { return _originals; }

    /// A message of a node with the names that its author knows.
    std::string Translate(std::string message) const;

private:
    std::map<std::string, std::string> _originals;
    std::vector<std::pair<PluginNode, std::string>> _renamed;
};

} // namespace Mox::Host
