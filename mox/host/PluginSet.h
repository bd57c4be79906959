#pragma once

#include "mox/host/Plugin.h"

#include <filesystem>
#include <list>
#include <string>
#include <utility>

namespace Mox::Host {

/// The plug-ins of one host. If two plug-ins offer the same type, the one loaded first supplies it;
/// however, a node file never replaces a compiled type.
class PluginSet
{
public:
    /// Loads another plug-in.
    /// @returns the plug-in, which exists as long as the set
    /// @throws HostError as Plugin does; the set is then unchanged
    const Plugin& Load(const std::filesystem::path& file);

    /// Loads all shared libraries in a folder, in order of their names.
    /// @throws HostError if the folder cannot be read or a library is not a plug-in
    void LoadFolder(const std::filesystem::path& folder);

    /// The plug-ins in search order: the order in which they were loaded, except that the plug-in
    /// for node files is last.
    const std::list<Plugin>& Plugins() const { return _plugins; }

    /// Returns the plug-in that supplies a type; null if no plug-in offers it.
    const Plugin* FindSupplier(const std::string& typeName) const;

    /// Creates a node of a type.
    /// @param where the location of the node in its document, for errors
    /// @returns an empty handle if no plug-in offers the type
    /// @throws HostError if the construction of the node fails
    PluginNode CreateNode(const std::string& typeName, const Place& where = {}) const;

    /// Sets the hint on how the user of the program can load more types, without punctuation at its
    /// ends.
    void SetSourceHint(std::string hint) { _sourceHint = std::move(hint); }

    /// Returns a suggestion to append to an error message about an unknown type: the listed type
    /// with the most similar name, otherwise the source hint.
    std::string SuggestType(const std::string& typeName) const;

private:
    std::list<Plugin> _plugins;
    std::string _sourceHint; ///< may be empty
};

/// Creates the error for a type that no plug-in offers.
HostError UnknownType(const std::string& type);

/// Returns the default plug-in folder of a program: the folder mox next to the library
/// mox_materials.
std::filesystem::path DefaultPluginFolder();

} // namespace Mox::Host
