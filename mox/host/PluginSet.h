#pragma once

#include "mox/host/Plugin.h"

#include <filesystem>
#include <list>
#include <string>
#include <vector>

namespace Mox::Host {

/// The plug-ins of one host. Where two offer one type, the plug-in that was loaded first supplies
/// it; but a node file never replaces a compiled type.
class PluginSet
{
public:
    /// Loads one plug-in more.
    /// @returns the plug-in, which lives as long as the set
    /// @throws HostError as Plugin does; the set does not change then
    const Plugin& Load(const std::filesystem::path& file);

    /// Loads every shared library of a folder, in order of their names.
    /// @throws HostError if the folder cannot be read or a library is no plug-in
    void LoadFolder(const std::filesystem::path& folder);

    /// In the order in which they are asked for a type: as they were loaded, but the plug-in for
    /// node files last.
    const std::list<Plugin>& Plugins() const { return _plugins; }

    /// The plug-in that supplies a type; null if none offers it.
    const Plugin* FindSupplier(const std::string& typeName) const;

    /// A new node of a type.
    /// @param where the place of the node in its document, for failures
    /// @returns an empty handle if no plug-in offers the type
    /// @throws HostError if the node's construction fails
    PluginNode CreateNode(const std::string& typeName, const Place& where = {}) const;

    /// What follows the message that no plug-in offers a type: the listed one that is most like it.
    std::string SuggestType(const std::string& typeName) const;

private:
    std::list<Plugin> _plugins;
};

/// The failure for a type that no plug-in offers.
HostError UnknownType(const std::string& type);

/// The folder in which a program finds its plug-ins without being told: mox, beside the library
/// mox_materials.
std::filesystem::path DefaultPluginFolder();

} // namespace Mox::Host
