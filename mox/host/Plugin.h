#pragma once

#include "mox/host/PluginNode.h"
#include "mox/host/Xpm.h"

#include <boost/dll/shared_library.hpp>
#include <boost/shared_ptr.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Materials {

class GuiNodeFactory;

} // namespace Mox::Materials

namespace Mox::Host {

/// A node type that a plug-in offers. The strings are UTF-8.
struct PluginType
{
    std::string File; ///< path of the plug-in
    std::string TypeName;
    std::string Library; ///< name of the library that supplies the type
    std::string Label;   ///< name of the type in the user interface
    bool Listed = true;  ///< whether hosts offer the type to the user
    /// An XPM image in the memory of the plug-in, or null. CopyIcon checks it.
    const char* const* Icon = nullptr;

    /// Returns the icon, which is empty if the plug-in does not supply one. The plug-in must still
    /// be loaded. Most programs need no icons, so loading a plug-in does not copy them.
    /// @throws HostError as CopyXpm does, naming the plug-in and the type
    XpmTable CopyIcon() const;
};

/// A loaded plug-in with its factory.
///
/// Its library stays loaded as long as this object or any node that it created exists: each node
/// handle holds a reference to the library.
class Plugin
{
public:
    /// Loads a plug-in, checks its interface version, creates its factory, and copies and checks
    /// its catalogue except for the icons.
    /// @throws HostError naming the file, if any of these steps fails
    explicit Plugin(const std::filesystem::path& file);

    // Assignment would unload the old library before destroying its factory.
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    ~Plugin();

    const std::filesystem::path& File() const { return _file; }

    /// The catalogue, in the order of the plug-in.
    const std::vector<PluginType>& Types() const { return _types; }

    bool Offers(const std::string& typeName) const;

    /// Returns whether this is the plug-in mox_library, whose node types are defined by files.
    bool OffersNodeFiles() const;

    /// Creates a node that keeps the library loaded.
    /// @param where the location of the node in its document, for errors
    /// @throws HostError if the factory cannot create the type or returns nothing
    PluginNode CreateNode(const std::string& typeName, const Place& where = {}) const;

private:
    std::filesystem::path _file;
    boost::shared_ptr<boost::dll::shared_library> _library;
    std::unique_ptr<Materials::GuiNodeFactory> _factory; ///< destroyed before _library
    std::vector<PluginType> _types;
};

} // namespace Mox::Host
