#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderEdge.h"

#include <cstdint>
#include <string>

class ShaderGraph;

/// Supplies interface parameters that a graph does not hold yet. The host implements it.
class MOX_API InterfaceNodeProvider
{
public:
    virtual ~InterfaceNodeProvider();

    /// The parameter under a key, or an empty handle if this provider does not serve it. graph is
    /// the one that asks; it does not store the answer, so a node that is to stay is inserted here.
    virtual ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                                  ShaderGraph& graph) = 0;
};
