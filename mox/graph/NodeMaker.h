#pragma once

#include "mox/host/HostError.h"
#include "mox/host/PluginSet.h"

#include <functional>
#include <string>

namespace Mox::Host {

struct MadeNode
{
    PluginNode Gui;
    bool IsPlaceholder = false; ///< stands for a type that nothing offers
};

/// Makes the nodes of a graph, and placeholders for types that nothing offers.
class NodeMaker
{
public:
    /// A new node of a type, or an empty handle if the type is not offered.
    using Factory = std::function<PluginNode(const std::string& type, const Place& where)>;

    explicit NodeMaker(Factory factory) : _factory(std::move(factory)) {}

    /// Makes what plug-ins offer; they must outlive the maker and the graph that has it.
    explicit NodeMaker(const PluginSet& plugins);

    /// @throws HostError if the node's construction fails, or if there is no placeholder either
    MadeNode Make(const std::string& type, const Place& where) const;

    /// @throws HostError if there is no placeholder
    PluginNode MakePlaceholder(const std::string& type, const Place& where) const;

    /// What follows the message that a type is not offered: the one that is most like it.
    std::string SuggestType(const std::string& type) const;

private:
    Factory _factory;
    const PluginSet* _plugins = nullptr; ///< null if the factory is not theirs
};

} // namespace Mox::Host
