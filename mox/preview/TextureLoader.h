#pragma once

#include "mox/decode/FileDecoder.h"
#include "mox/host/PluginBinding.h"
#include "mox/host/Problem.h"
#include "mox/preview/TextureLevels.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace Mox::Host {

/// Loads the textures of one picture. A texture that cannot be used costs no more than itself: a
/// stand-in takes its place, and a warning names the file.
class TextureLoader
{
public:
    /// @param files must outlive the object
    /// @param folder in which relative names of files start
    /// @param deviceSide largest width and height of a texture that the device can hold
    /// @param problems takes the warnings, and must outlive the object
    TextureLoader(FileDecoder& files, std::filesystem::path folder, std::uint32_t deviceSide,
                  ProblemList& problems);

    /// The file that the binding names, with its smaller levels, or a stand-in.
    std::vector<TextureImage> Load(const TextureSettings& binding);

private:
    TextureImage Read(const std::filesystem::path& file);

    FileDecoder& _files;
    std::filesystem::path _folder;
    std::uint32_t _deviceSide;
    ProblemList& _problems;
    std::uint64_t _bytes = 0; ///< of all textures so far
};

} // namespace Mox::Host
