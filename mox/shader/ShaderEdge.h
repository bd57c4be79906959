#pragma once

#include "mox/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <string>

class ShaderNode;
class ShaderEdge;

/// Ordered containers compare handles by the identity of the object, not by its contents.
using ShaderNodeHandle = boost::shared_ptr<ShaderNode>;
using ShaderEdgeHandle = boost::shared_ptr<ShaderEdge>;

/// Connects an output port of one shader node to an input port of another. The names are not
/// checked. An edge does not keep its nodes alive, and does not change after creation.
class MOX_API ShaderEdge
{
public:
    ShaderEdge(const ShaderNodeHandle& tail, const std::string& tailPort,
               const ShaderNodeHandle& head, const std::string& headPort, bool edgeFlag);

    boost::weak_ptr<ShaderNode> Tail; ///< the node whose output is read
    boost::weak_ptr<ShaderNode> Head; ///< the node whose input receives the value
    std::string TailPort;
    std::string HeadPort;
    bool EdgeFlag; ///< for the host; false for all edges that the library makes
};
