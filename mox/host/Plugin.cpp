#include "mox/host/Plugin.h"

#include "mox/InterfaceVersion.h"
#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/host/LibraryCall.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <system_error>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::InterfaceVersion;

/// Releases the node first and only then its library, in whose code the node's destructor lies.
struct NodeRelease
{
    boost::shared_ptr<boost::dll::shared_library> Library;
    boost::shared_ptr<Materials::GuiNode> Node;

    void operator()(Materials::GuiNode*) { Node.reset(); }
};

template <class Function>
Function& FindExport(const boost::dll::shared_library& library, const Place& where,
                     const char* name)
{
    if (!library.has(name))
        throw HostError(where, Compose("is no plug-in: it does not export ", name));
    return library.get<Function>(name);
}

} // namespace

Plugin::Plugin(const std::filesystem::path& file) : _file(file)
{
    const Place where{file.string(), 0, {}, {}};
    try {
        _library =
            boost::make_shared<boost::dll::shared_library>(file, boost::dll::load_mode::rtld_now);
    } catch (const std::system_error& error) {
        throw HostError(where, Compose("cannot be loaded: ", error.what()));
    }

    auto& getVersion = FindExport<std::int32_t()>(*_library, where, "GetMaterialLibVersion");
    const std::int32_t version = CallLibrary(where, [&] { return getVersion(); });
    if (version != InterfaceVersion) {
        throw HostError(where, Compose("has interface version ", version, ", but version ",
                                       InterfaceVersion, " is needed"));
    }
    auto& create = FindExport<Materials::GuiNodeFactory*()>(*_library, where, "CreateNodeFactory");
    _factory.reset(CallLibrary(where, [&] { return create(); }));
    if (!_factory)
        throw HostError(where, "gave no factory");
}

const std::vector<Materials::GuiNodeDescription>& Plugin::Descriptions() const
{
    return _factory->Descriptions;
}

bool Plugin::Offers(const std::string& typeName) const
{
    return std::any_of(Descriptions().begin(), Descriptions().end(),
                       [&](const auto& row) { return row.TypeName == typeName; });
}

boost::shared_ptr<Materials::GuiNode> Plugin::CreateNode(const std::string& typeName) const
{
    boost::shared_ptr<Materials::GuiNode> node = _factory->Create(typeName);
    if (!node) {
        throw ShaderError(
            Compose("\"", _file.string(), "\" gave no node of the type \"", typeName, "\""));
    }
    Materials::GuiNode* address = node.get();
    return {address, NodeRelease{_library, std::move(node)}};
}

} // namespace Mox::Host
