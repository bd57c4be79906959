#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// The environment variable that lists the folders of node files, separated by colons.
constexpr const char* nodePathVariable = "MOX_NODE_PATH";

/// The attributes of a node file's root element.
struct NodeHead
{
    std::string File;
    std::string TypeName; ///< empty if the file does not start with a root element <node> with a
                          ///< type
    std::string Label;
    std::string Library;
    bool IsCompiled = false;
};

/// Returns the folders that are searched for node files: those of the environment variable, then
/// the folder "nodes" next to a plug-in.
std::vector<std::string> NodeFolders(const std::filesystem::path& pluginFolder);

/// Returns the node files of a folder, sorted by name; none if it cannot be read. Only the start of
/// each file is read, so that a hundred of them are cheap to list; the rest of a file may be
/// invalid.
std::vector<NodeHead> ListNodeFiles(const std::string& folder);

} // namespace Mox::Host
