#pragma once

#include "mox/host/HostError.h"
#include "mox/host/PluginSet.h"

#include <functional>
#include <string>

namespace Mox::Host {

struct MadeNode
{
    PluginNode Gui;
    bool IsPlaceholder = false; ///< represents a type that no plug-in provides
};

/// Creates the nodes of a graph, and placeholders for types that are not available.
class NodeMaker
{
public:
    /// Creates a node of a type; returns a null handle if the type is not available.
    using Factory = std::function<PluginNode(const std::string& type, const Place& where)>;

    explicit NodeMaker(Factory factory) : _factory(std::move(factory)) {}

    /// Creates nodes of the types that the plug-ins provide; they must outlive the maker and its
    /// graph.
    explicit NodeMaker(const PluginSet& plugins);

    /// @throws HostError if the construction of the node fails, or if no placeholder is available
    ///         either
    MadeNode Make(const std::string& type, const Place& where) const;

    /// @throws HostError if no placeholder is available
    PluginNode MakePlaceholder(const std::string& type, const Place& where) const;

    /// Returns a suggestion to append to the message that a type is not available, as
    /// PluginSet::SuggestType does.
    std::string SuggestType(const std::string& type) const;

private:
    Factory _factory;
    const PluginSet* _plugins = nullptr; ///< null if the factory does not use plug-ins
};

} // namespace Mox::Host
