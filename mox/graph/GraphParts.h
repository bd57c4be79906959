#pragma once

#include <string>
#include <vector>

namespace Mox::Host {

/// Some nodes and annotations of a material, by id.
struct GraphParts
{
    std::vector<std::string> Nodes;
    std::vector<std::string> Annotations;

    bool IsEmpty() const { return Nodes.empty() && Annotations.empty(); }
};

} // namespace Mox::Host
