#pragma once

#include <boost/weak_ptr.hpp>

#include <string>

namespace Mox::Materials {

class GuiNode;

/// An edge of the authoring graph. The host creates and owns it; the library only reads the two
/// port names.
class GuiEdge
{
public:
    boost::weak_ptr<GuiNode> Tail; ///< node that the edge starts at
    boost::weak_ptr<GuiNode> Head; ///< node that the edge ends at
    std::string TailPort;          ///< Name of an output port of the tail
    std::string HeadPort;          ///< Name of an input port of the head
};

} // namespace Mox::Materials
