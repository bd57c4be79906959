#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// The environment variable with the folders of node files, separated by colons.
constexpr const char* nodePathVariable = "MOX_NODE_PATH";

/// What a node file says of its type in the start tag of its root element.
struct NodeHead
{
    std::string File;
    std::string TypeName; ///< empty if there is no root element <node> with a type at the beginning
    std::string Label;
    std::string Library;
    bool IsCompiled = false;
};

/// The folders that are searched for node files: those of the environment variable, then the one
/// named "nodes" beside a plug-in.
std::vector<std::string> NodeFolders(const std::filesystem::path& pluginFolder);

/// The node files of a folder, by name; none if it cannot be read. Of each only the beginning is
/// looked at, so that a hundred of them cost little: a file that has a head may be wrong further
/// on.
std::vector<NodeHead> ListNodeFiles(const std::string& folder);

} // namespace Mox::Host
