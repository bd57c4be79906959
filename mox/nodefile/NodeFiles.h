#pragma once

#include "mox/host/PluginSet.h"
#include "mox/nodefile/NodeFile.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

/// The node files that plug-ins find, for what a plug-in cannot report of its types: help of the
/// node, ranges of its properties, and files that are wrong.
class NodeFiles
{
public:
    /// Looks for files where plug-ins of these folders do; of each only the beginning is read.
    explicit NodeFiles(const PluginSet& plugins);

    /// The description of a type; null if no file describes it or if the file is wrong.
    std::shared_ptr<const NodeFile> Find(const std::string& typeName) const;

    /// The files that say of themselves that they define a type, in order of search.
    std::vector<std::string> FilesOf(const std::string& typeName) const;

private:
    std::map<std::string, std::vector<std::string>> _definitions; ///< files, by type
    std::map<std::string, std::string> _descriptions;             ///< file, by supplied type
};

} // namespace Mox::Host
