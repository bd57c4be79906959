#include "mox/nodefile/NodeFiles.h"

#include "mox/nodefile/NodeFileReader.h"
#include "mox/nodefile/NodeFolders.h"

#include <set>

namespace Mox::Host {

NodeFiles::NodeFiles(const PluginSet& plugins)
{
    std::set<std::filesystem::path> searched;
    for (const Plugin& plugin : plugins.Plugins()) {
        for (const std::string& folder : NodeFolders(plugin.File().parent_path())) {
            if (!searched.insert(std::filesystem::weakly_canonical(folder)).second)
                continue;
            for (const NodeHead& head : ListNodeFiles(folder)) {
                if (head.TypeName.empty())
                    continue;
                if (!head.IsCompiled)
                    _definitions[head.TypeName].push_back(head.File);
                const Plugin* supplier = plugins.FindSupplier(head.TypeName);
                if (supplier && supplier->OffersNodeFiles() != head.IsCompiled)
                    _descriptions.emplace(head.TypeName, head.File);
            }
        }
    }
}

std::shared_ptr<const NodeFile> NodeFiles::Find(const std::string& typeName) const
{
    const auto description = _descriptions.find(typeName);
    if (description == _descriptions.end())
        return nullptr;
    try {
        return std::make_shared<const NodeFile>(ReadNodeFile(description->second));
    } catch (const HostError&) {
        return nullptr; // creating a node of the type reports the error
    }
}

XpmTable NodeFiles::FindIcon(const PluginType& type) const
{
    if (type.Icon)
        return type.CopyIcon();
    const auto file = Find(type.TypeName);
    return file ? file->Icon : XpmTable();
}

std::vector<std::string> NodeFiles::FilesOf(const std::string& typeName) const
{
    const auto files = _definitions.find(typeName);
    return files == _definitions.end() ? std::vector<std::string>() : files->second;
}

} // namespace Mox::Host
