#pragma once

#include "mox/decode/FileDecoder.h"
#include "mox/host/PluginBinding.h"
#include "mox/host/Problem.h"
#include "mox/preview/TextureLevels.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace Mox::Host {

/// The maximum sizes of textures on a device, in texels.
struct TextureLimits
{
    std::uint32_t Image;  ///< width and height of an image, and of a face of a cube map
    std::uint32_t Volume; ///< width, height and depth of a volume
};

/// Loads the textures of one image. A texture that cannot be used is replaced by a stand-in, with a
/// warning that names the file.
class TextureLoader
{
public:
    /// @param files must outlive this object
    /// @param folder that relative file names refer to
    /// @param limits of the device that stores the textures
    /// @param problems receives the warnings; must outlive this object
    TextureLoader(FileDecoder& files, std::filesystem::path folder, const TextureLimits& limits,
                  ProblemList& problems);

    /// Returns all mip levels of the binding's file, or those of a stand-in.
    std::vector<TextureImage> Load(const TextureSettings& binding, TextureShape shape);

private:
    TextureImage Read(const std::filesystem::path& file, TextureShape shape, bool isSrgb);

    FileDecoder& _files;
    std::filesystem::path _folder;
    TextureLimits _limits;
    ProblemList& _problems;
    std::uint64_t _bytes = 0; ///< total size of all textures so far
};

} // namespace Mox::Host
