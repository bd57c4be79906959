#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// A material document found among the files that a user named. The path is stored as a string,
/// since there may be very many and std::filesystem::path takes several times the memory.
struct MaterialFile
{
    std::string Document;
    std::string Name; ///< path below the folder in which it was found, without the extension
};

/// Which files of a folder are materials.
enum class FoundFormats
{
    MaterialDocument, ///< .xml files
    All               ///< also .mtlx files
};

/// Finds the materials among files and folders. A file is always accepted, whatever it contains. A
/// folder stands for every material in it and its subfolders, sorted by name bytewise: each .xml
/// file whose root is <material>, and each .mtlx file with a material or a shader (see
/// MayHoldMaterialX). Files that cannot be parsed are listed too, so that a damaged material is not
/// silently skipped. A file that is reached more than once, via another path or a folder, is listed
/// once, at its first position; links with names of their own are separate files.
/// @param workers number of threads that inspect the files, at least 1
/// @throws HostError if a folder cannot be read or contains no material
std::vector<MaterialFile> FindMaterials(const std::vector<std::filesystem::path>& filesAndFolders,
                                        unsigned workers, FoundFormats formats = FoundFormats::All);

} // namespace Mox::Host
