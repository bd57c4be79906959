#include "mox/graph/NodeMaker.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr const char* placeholderType = "CoreDefault";

} // namespace

NodeMaker::NodeMaker(const PluginSet& plugins)
    : _factory([&plugins](const std::string& type, const Place& where) {
          return plugins.CreateNode(type, where);
      }),
      _plugins(&plugins)
{}

MadeNode NodeMaker::Make(const std::string& type, const Place& where) const
{
    auto node = CallLibrary(where, [&] { return _factory(type, where); });
    if (node)
        return {node, false};
    return {MakePlaceholder(type, where), true};
}

std::string NodeMaker::SuggestType(const std::string& type) const
{
    return _plugins ? _plugins->SuggestType(type) : std::string();
}

PluginNode NodeMaker::MakePlaceholder(const std::string& type, const Place& where) const
{
    auto node = CallLibrary(where, [&] { return _factory(placeholderType, where); });
    if (!node) {
        throw HostError(
            where, Compose("no plug-in offers the type \"", type, "\" or a placeholder for it"));
    }
    return node;
}

} // namespace Mox::Host
