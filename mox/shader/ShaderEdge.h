#pragma once

#include "mox/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <string>

class ShaderNode;
class ShaderEdge;

/// Ordered containers key handles by the identity of the object, not by its contents.
using ShaderNodeHandle = boost::shared_ptr<ShaderNode>;
using ShaderEdgeHandle = boost::shared_ptr<ShaderEdge>;

/// Joins an output port of one shader node to an input port of another, by name and unchecked.
/// It keeps neither node alive and does not change after creation.
class MOX_API ShaderEdge
{
public:
    ShaderEdge(const ShaderNodeHandle& tail, const std::string& tailPort,
               const ShaderNodeHandle& head, const std::string& headPort, bool edgeFlag);

    boost::weak_ptr<ShaderNode> Tail; ///< the node whose output is read
    boost::weak_ptr<ShaderNode> Head; ///< the node whose input is fed
    std::string TailPort;
    std::string HeadPort;
    bool EdgeFlag; ///< the host's; false on every edge that the library makes
};
