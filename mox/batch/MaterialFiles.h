#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// A material document among the files that a user named. Plain text, since there may be very many
/// and a path takes several times the memory.
struct MaterialFile
{
    std::string Document;
    std::string Name; ///< without ending; below the folder in which it was found
};

/// The materials of files and folders. A file counts whatever it holds. A folder stands for every
/// material in it and below, in the order of their names' bytes: each .xml file whose root is
/// <material>, and each that breaks before its root, so that a damaged material is not passed over
/// in silence. A file that is named more than once, be it by another road or in a folder, is taken
/// once, as it was named first; links with names of their own are files of their own.
/// @param workers number of threads that look into the files, at least 1
/// @throws HostError if a folder cannot be read or holds no material
std::vector<MaterialFile> FindMaterials(const std::vector<std::filesystem::path>& filesAndFolders,
                                        unsigned workers = 1);

} // namespace Mox::Host
