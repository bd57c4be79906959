#pragma once

#include "mox/authoring/GuiPropertyBag.h"
#include "mox/shader/ShaderNode.h"

#include <string>
#include <unordered_map>
#include <utility>

namespace Mox::Host {

/// The origin of a shader node.
struct ShaderOrigin
{
    std::string Node;      ///< id of the authoring node; empty for the environment
    std::string Type;      ///< type of that node, or "conversion"
    std::string Port = {}; ///< for a parameter that receives the value of an input of that node:
                           ///< the input
    std::string Name = {}; ///< for a parameter with a stand-in name: the name of the binding
    /// Properties of that node, as long as its graph exists. Null for a conversion and for the
    /// environment.
    const Materials::GuiPropertyBag* Properties = nullptr;
};

/// Origins of the nodes of one shader graph. Nodes without an entry belong to the environment.
class ShaderOrigins
{
public:
    void Set(const ShaderNode& node, ShaderOrigin origin) { _origins[&node] = std::move(origin); }

    const ShaderOrigin& Of(const ShaderNode& node) const
    {
        static const ShaderOrigin environment;
        const auto entry = _origins.find(&node);
        return entry == _origins.end() ? environment : entry->second;
    }

private:
    std::unordered_map<const ShaderNode*, ShaderOrigin> _origins;
};

} // namespace Mox::Host
