#pragma once

#include "mox/decode/FileDecoder.h"
#include "mox/host/PluginBinding.h"
#include "mox/host/Problem.h"
#include "mox/preview/TextureLevels.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace Mox::Host {

/// Loads the textures of one image. A texture that cannot be used is replaced by a stand-in, with a
/// warning that names the file.
class TextureLoader
{
public:
    /// @param files must outlive this object
    /// @param folder that relative file names refer to
    /// @param deviceSide maximum width and height of a texture on the device
    /// @param problems receives the warnings; must outlive this object
    TextureLoader(FileDecoder& files, std::filesystem::path folder, std::uint32_t deviceSide,
                  ProblemList& problems);

    /// Returns all mip levels of the binding's file, or those of a stand-in.
    std::vector<TextureImage> Load(const TextureSettings& binding);

private:
    TextureImage Read(const std::filesystem::path& file);

    FileDecoder& _files;
    std::filesystem::path _folder;
    std::uint32_t _deviceSide;
    ProblemList& _problems;
    std::uint64_t _bytes = 0; ///< total size of all textures so far
};

} // namespace Mox::Host
