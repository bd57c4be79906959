#include "mox/host/Plugin.h"

#include "mox/InterfaceVersion.h"
#include "mox/Text.h"
#include "mox/authoring/GuiNodeFactory.h"
#include "mox/host/HostError.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <libxml/xmlstring.h>

#include <algorithm>
#include <cstdint>
#include <dlfcn.h>
#include <system_error>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiNode;
using Materials::GuiNodeDescription;
using Materials::GuiNodeFactory;
using Materials::InterfaceVersion;

/// Releases the node before its library, which contains the code of the node's destructor.
struct NodeRelease
{
    boost::shared_ptr<boost::dll::shared_library> Library;
    boost::shared_ptr<GuiNode> Node;

    void operator()(GuiNode*) { Node.reset(); }
};

/// Returns the dynamic loader's own message about the last library, without the name of the file.
std::string DescribeLoadError(const std::error_code& error, const std::string& file)
{
    const char* message = dlerror();
    if (!message)
        return error.message();
    const std::string text = message;
    const std::string prefix = file + ": ";
    return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

template <class Function>
Function& FindExport(const boost::dll::shared_library& library, const Place& where,
                     const char* name)
{
    if (!library.has(name))
        throw HostError(where, Compose("is not a plug-in: it does not export ", name));
    return library.get<Function>(name);
}

/// Calls an exported function and returns its result.
template <class Result>
Result CallExport(const boost::dll::shared_library& library, const Place& where, const char* name)
{
    auto& function = FindExport<Result()>(library, where, name);
    try {
        return function();
    } catch (...) {
        ThrowAsHostError(where, name);
    }
}

PluginType CopyRow(const GuiNodeDescription& row, const Place& where)
{
    for (const auto& [text, field] :
         {std::pair(&row.TypeName, "type name"), std::pair(&row.Library, "library"),
          std::pair(&row.Label, "label")}) {
        if (!xmlCheckUTF8(reinterpret_cast<const unsigned char*>(text->c_str()))) {
            throw HostError(where, Compose("the ", field, " \"", *text, "\" is not UTF-8"));
        }
    }
    return {where.File, row.TypeName, row.Library, row.Label, row.Listed, row.Icon};
}

} // namespace

XpmTable PluginType::CopyIcon() const
{
    if (!Icon)
        return {};
    try {
        return CopyXpm(Icon);
    } catch (const HostError& error) {
        throw HostError(File, Compose("type \"", TypeName, "\": ", error.Message));
    }
}

Plugin::Plugin(const std::filesystem::path& file) : _file(file)
{
    const Place where(file.string());
    std::error_code error;
    _library = boost::make_shared<boost::dll::shared_library>(file, error,
                                                              boost::dll::load_mode::rtld_now);
    if (error) {
        throw HostError(where, Compose("cannot be loaded as a plug-in: ",
                                       DescribeLoadError(error, where.File)));
    }

    const auto version = CallExport<std::int32_t>(*_library, where, "GetMaterialLibVersion");
    if (version != InterfaceVersion) {
        throw HostError(where, Compose("has interface version ", version, ", expected version ",
                                       InterfaceVersion));
    }
    _factory.reset(CallExport<GuiNodeFactory*>(*_library, where, "CreateNodeFactory"));
    if (!_factory)
        throw HostError(where, "returned no factory");
    for (const GuiNodeDescription& row : _factory->Descriptions)
        _types.push_back(CopyRow(row, where));
}

Plugin::~Plugin() = default;

bool Plugin::Offers(const std::string& typeName) const
{
    return std::ranges::find(_types, typeName, &PluginType::TypeName) != _types.end();
}

bool Plugin::OffersNodeFiles() const
{
    return _file.stem() == "mox_library";
}

PluginNode Plugin::CreateNode(const std::string& typeName, const Place& where) const
{
    boost::shared_ptr<GuiNode> node;
    try {
        node = _factory->Create(typeName);
    } catch (...) {
        ThrowAsHostError(where, Compose("Create of the type \"", typeName, "\""));
    }
    if (!node) {
        throw HostError(where,
                        Compose("the plug-in returned no node of the type \"", typeName, "\""));
    }
    GuiNode* address = node.get();
    return PluginNode({address, NodeRelease{_library, std::move(node)}}, where);
}

} // namespace Mox::Host
