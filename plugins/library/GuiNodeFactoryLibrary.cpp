#include "plugins/library/GuiNodeFactoryLibrary.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFileReader.h"
#include "mox/nodefile/NodeFolders.h"
#include "plugins/library/FileNode.h"

#include <boost/dll/runtime_symbol_info.hpp>

using namespace Mox::Host;
using namespace Mox::Materials;

namespace {

/// Returns the folder that contains this module.
std::filesystem::path ModuleFolder()
{
    static const char inside = 0;
    return boost::dll::symbol_location_ptr(&inside).parent_path();
}

} // namespace

GuiNodeFactoryLibrary::GuiNodeFactoryLibrary()
{
    for (const std::string& folder : NodeFolders(ModuleFolder())) {
        for (NodeHead& head : ListNodeFiles(folder)) {
            if (head.TypeName.empty() || head.IsCompiled ||
                !_files.emplace(head.TypeName, std::move(head.File)).second)
                continue;
            GuiNodeDescription& row = Descriptions.emplace_back();
            row.TypeName = std::move(head.TypeName);
            row.Library = std::move(head.Library);
            row.Label = std::move(head.Label);
        }
    }
}

boost::shared_ptr<GuiNode> GuiNodeFactoryLibrary::Create(const std::string& typeName)
{
    return boost::shared_ptr<GuiNode>(new FileNode(Find(typeName)));
}

std::shared_ptr<const NodeFile> GuiNodeFactoryLibrary::Find(const std::string& typeName)
{
    const auto file = _files.find(typeName);
    if (file == _files.end())
        throw ShaderError(Compose("cannot create \"", typeName, "\" node"));
    const std::lock_guard lock(_mutex);
    std::shared_ptr<const NodeFile>& known = _read[typeName];
    if (!known) {
        try {
            known = std::make_shared<const NodeFile>(ReadNodeFile(file->second));
        } catch (const HostError& error) {
            throw ShaderError(error.what());
        }
    }
    return known;
}
