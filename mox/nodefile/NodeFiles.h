#pragma once

#include "mox/host/PluginSet.h"
#include "mox/nodefile/NodeFile.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

/// The node files that plug-ins find. They provide what a plug-in cannot report about its types:
/// help, ranges of properties, icons of file types, and errors in the files.
class NodeFiles
{
public:
    /// Searches the folders that plug-ins in these folders would search; reads only the start of
    /// each file.
    explicit NodeFiles(const PluginSet& plugins);

    /// Returns the description of a type; null if no file describes it or the file is invalid.
    std::shared_ptr<const NodeFile> Find(const std::string& typeName) const;

    /// Returns the icon of a type: the one of its plug-in, otherwise the one of its file, which is
    /// read for this; empty if the type has none.
    XpmTable FindIcon(const PluginType& type) const;

    /// Returns the files that claim to define a type, in search order.
    std::vector<std::string> FilesOf(const std::string& typeName) const;

private:
    std::map<std::string, std::vector<std::string>> _definitions; ///< files by type
    std::map<std::string, std::string> _descriptions;             ///< file for each compiled type
};

} // namespace Mox::Host
