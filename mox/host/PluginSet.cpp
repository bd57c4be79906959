#include "mox/host/PluginSet.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/host/LibraryFolder.h"

#include <algorithm>
#include <system_error>

namespace Mox::Host {

void PluginSet::Load(const std::filesystem::path& file)
{
    _plugins.emplace_back(file);
}

void PluginSet::LoadFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".so")
            files.push_back(entry.path());
    }
    if (error) {
        throw HostError(folder.string(),
                        Materials::Compose("cannot be searched for plug-ins: ", error.message()));
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files)
        Load(file);
}

PluginNode PluginSet::CreateNode(const std::string& typeName, const Place& where) const
{
    for (const Plugin& plugin : _plugins) {
        if (plugin.Offers(typeName))
            return plugin.CreateNode(typeName, where);
    }
    return {};
}

HostError UnknownType(const std::string& type)
{
    return {{}, Materials::Compose("no plug-in offers the type \"", type, "\"")};
}

std::filesystem::path DefaultPluginFolder()
{
    return LibraryFolder() / "mox";
}

} // namespace Mox::Host
