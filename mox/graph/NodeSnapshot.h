#pragma once

#include "mox/host/PluginNode.h"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace Mox::Host {

/// Whether two properties have the same kind and the same value to the last bit; references are the
/// same if they lead to one object.
bool HaveSameValue(const Materials::GuiProperty& left, const Materials::GuiProperty& right);

/// What a change of properties can alter on a node: values and flags of its properties, ports and
/// colours. What a class keeps beside these is out of reach.
class NodeSnapshot
{
public:
    explicit NodeSnapshot(const PluginNode& node);

    /// Gives the node back what it had. Only once, since nothing is copied.
    void Restore() noexcept;

    /// The properties as they were whose value is another one now.
    std::vector<boost::shared_ptr<Materials::GuiProperty>> ChangedProperties() const;

private:
    PluginNode _node;
    std::vector<boost::shared_ptr<Materials::GuiProperty>> _properties; ///< in the bag's order
    std::vector<Materials::GuiPort> _inputs;
    std::vector<Materials::GuiPort> _outputs;
    float _foreground[4];
    float _background[4];
};

} // namespace Mox::Host
