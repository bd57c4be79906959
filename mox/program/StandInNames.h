#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <boost/noncopyable.hpp>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Host {

/// While an object of this class exists, nodes whose binding names are not valid in Cg have
/// stand-in names, since a node refuses to make a parameter with an invalid name. Each name has its
/// own stand-in, which differs from the names of all bindings. All nodes are renamed at once,
/// because nodes may refer to the names of other nodes.
class StandInNames : private boost::noncopyable
{
public:
    /// @param problems receives an error for each node that fails to report whether it has a
    ///        binding
    StandInNames(const MaterialGraph& graph, ProblemList& problems);
    ~StandInNames();

    /// The original name for a stand-in; empty for any other name.
    std::string OriginalOf(const std::string& name) const;

    /// Replaces stand-ins in a node's message with the original names.
    std::string Translate(const std::string& message) const;

private:
    std::map<std::string, std::string> _originals;
    std::vector<std::pair<PluginNode, std::string>> _renamed;
};

} // namespace Mox::Host
