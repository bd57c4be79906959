#include "mox/graph/NodeMaker.h"

#include "mox/Text.h"
#include "mox/host/LibraryCall.h"

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiNode;

namespace {

constexpr const char* placeholderType = "CoreDefault";

} // namespace

NodeMaker::NodeMaker(const PluginSet& plugins)
    : _factory([&plugins](const std::string& type) { return plugins.CreateNode(type); })
{}

MadeNode NodeMaker::Make(const std::string& type, const Place& where) const
{
    auto node = CallLibrary(where, [&] { return _factory(type); });
    if (node)
        return {node, false};
    return {MakePlaceholder(type, where), true};
}

boost::shared_ptr<GuiNode> NodeMaker::MakePlaceholder(const std::string& type,
                                                      const Place& where) const
{
    auto node = CallLibrary(where, [&] { return _factory(placeholderType); });
    if (!node) {
        throw HostError(
            where, Compose("no plug-in offers the type \"", type, "\", nor a placeholder for it"));
    }
    return node;
}

} // namespace Mox::Host
