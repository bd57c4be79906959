#pragma once

#include "mox/authoring/GuiNodeFactory.h"

#include <boost/dll/shared_library.hpp>
#include <boost/shared_ptr.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

/// A loaded plug-in with its factory.
///
/// Its library stays loaded as long as this object or any node that it created lives: each node
/// handle carries the library along. Errors need no such care, since their code lies in
/// mox_materials.
class Plugin
{
public:
    /// Loads a plug-in, checks its interface version and creates its factory.
    /// @throws HostError naming the file, if any of that fails
    explicit Plugin(const std::filesystem::path& file);

    // Assignment would let the old library go ahead of its factory.
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    const std::filesystem::path& File() const { return _file; }

    /// The catalogue. Icons point into the library.
    const std::vector<Materials::GuiNodeDescription>& Descriptions() const;

    bool Offers(const std::string& typeName) const;

    /// A new node that keeps the library loaded.
    /// @throws ShaderError if the factory cannot create the type or gives nothing
    boost::shared_ptr<Materials::GuiNode> CreateNode(const std::string& typeName) const;

private:
    std::filesystem::path _file;
    boost::shared_ptr<boost::dll::shared_library> _library;
    std::unique_ptr<Materials::GuiNodeFactory> _factory; ///< behind _library, so destroyed first
};

} // namespace Mox::Host
