#include "mox/host/PluginSet.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/host/NearestName.h"
#include "mox/host/SearchFolders.h"

#include <algorithm>
#include <system_error>

namespace Mox::Host {

const Plugin& PluginSet::Load(const std::filesystem::path& file)
{
    const auto loaded = _plugins.emplace(_plugins.end(), file);
    if (!loaded->OffersNodeFiles()) {
        const auto nodeFiles = std::find_if(_plugins.begin(), loaded, [](const Plugin& plugin) {
            return plugin.OffersNodeFiles();
        });
        _plugins.splice(nodeFiles, _plugins, loaded);
    }
    return *loaded;
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

const Plugin* PluginSet::FindSupplier(const std::string& typeName) const
{
    const auto supplier = std::find_if(_plugins.begin(), _plugins.end(), [&](const Plugin& plugin) {
        return plugin.Offers(typeName);
    });
    return supplier == _plugins.end() ? nullptr : &*supplier;
}

PluginNode PluginSet::CreateNode(const std::string& typeName, const Place& where) const
{
    const Plugin* supplier = FindSupplier(typeName);
    return supplier ? supplier->CreateNode(typeName, where) : PluginNode();
}

std::string PluginSet::SuggestType(const std::string& typeName) const
{
    std::vector<RightName> names;
    for (const Plugin& plugin : _plugins) {
        for (const PluginType& type : plugin.Types()) {
            if (type.Listed)
                names.push_back({type.TypeName, type.Label});
        }
    }
    const std::string suggestion = SuggestName(typeName, names);
    return suggestion.empty() && !_sourceHint.empty() ? "; " + _sourceHint : suggestion;
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
