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
                if (!head.TypeName.empty())
                    _entries[head.TypeName].push_back({head.File, head.IsCompiled});
            }
        }
    }
}

std::shared_ptr<const NodeFile> NodeFiles::Find(const std::string& typeName) const
{
    const auto entries = _entries.find(typeName);
    if (entries == _entries.end())
        return nullptr;
    try {
        return std::make_shared<const NodeFile>(ReadNodeFile(entries->second.front().File));
    } catch (const HostError&) {
        return nullptr; // creating a node of the type reports it
    }
}

std::vector<std::string> NodeFiles::FilesOf(const std::string& typeName) const
{
    std::vector<std::string> files;
    const auto entries = _entries.find(typeName);
    if (entries == _entries.end())
        return files;
    for (const Entry& entry : entries->second) {
        if (!entry.IsCompiled)
            files.push_back(entry.File);
    }
    return files;
}

} // namespace Mox::Host
