#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderEdge.h"

#include <cstdint>
#include <string>

class ShaderGraph;

/// Supplies interface parameters that a graph does not contain yet. Implemented by the host.
class MOX_API InterfaceNodeProvider
{
public:
    virtual ~InterfaceNodeProvider();

    /// Returns the parameter for a key, or an empty handle if this provider does not have it. The
    /// graph that calls this function does not store the result, so a provider must insert nodes
    /// that should stay in the graph.
    virtual ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                                  ShaderGraph& graph) = 0;
};
