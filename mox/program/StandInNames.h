#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <boost/noncopyable.hpp>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Host {

/// While it exists, nodes whose binding names are not Cg names have stand-ins for names, since a
/// node refuses to make a parameter of such a name. Each name has a stand-in of its own, which is
/// not the name of any other binding. Nodes may refer to others for their names, so all are renamed
/// at once.
class StandInNames : private boost::noncopyable
{
public:
    /// @param problems takes each node that does not say whether it has a binding
    StandInNames(const MaterialGraph& graph, ProblemList& problems);
    ~StandInNames();

    /// The name that a stand-in stands for; empty for any other name.
    std::string OriginalOf(const std::string& name) const;

    /// A message of a node with the names that its author knows.
    std::string Translate(const std::string& message) const;

private:
    std::map<std::string, std::string> _originals;
    std::vector<std::pair<PluginNode, std::string>> _renamed;
};

} // namespace Mox::Host
