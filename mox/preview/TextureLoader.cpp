#include "mox/preview/TextureLoader.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

TextureImage MakeStandIn(const TextureSettings& binding, TextureShape shape)
{
    const bool isNormal = binding.UsageHint == "Normal" || binding.UsageHint == "DXT5 Normal";
    return isNormal ? MakeFlatNormalImage(shape) : MakeCheckerImage(shape);
}

} // namespace

TextureLoader::TextureLoader(FileDecoder& files, std::filesystem::path folder,
                             const TextureLimits& limits, ProblemList& problems)
    : _files(files), _folder(std::move(folder)), _limits(limits), _problems(problems)
{}

std::vector<TextureImage> TextureLoader::Load(const TextureSettings& binding, TextureShape shape)
{
    if (!binding.File.empty()) {
        try {
            const bool isSrgb = binding.IsSrgb;
            return MakeMipLevels(Read(_folder / binding.File, shape, isSrgb), shape, isSrgb);
        } catch (const HostError& error) {
            _problems.Warn("preview-texture", error.Where, error.Message);
        }
    }
    return MakeMipLevels(MakeStandIn(binding, shape), shape, binding.IsSrgb);
}

TextureImage TextureLoader::Read(const std::filesystem::path& file, TextureShape shape, bool isSrgb)
{
    constexpr std::uint64_t largestTextures = 2; // memory limit, in textures of the largest size
    const Place where{file.string()};
    TextureImage image;
    try {
        image = ToShape(*_files.ReadTexture(file), shape, isSrgb);
    } catch (const HostError& error) {
        throw HostError(error.Where.File.empty() ? where : error.Where, error.Message);
    }
    const bool isVolume = shape == TextureShape::Volume;
    const std::uint32_t limit = isVolume ? _limits.Volume : _limits.Image;
    if (std::max({image.Width, image.Height, isVolume ? image.Layers : 1}) > limit) {
        throw HostError(where, Compose("a texture of ", image.Width, " by ", image.Height,
                                       isVolume ? Compose(" by ", image.Layers) : "",
                                       " texels is larger than the Vulkan device's limit of ",
                                       limit, " on a side"));
    }
    const std::uint64_t most = largestTextures * _files.Limits().Bytes;
    if (image.Bytes.size() > most - _bytes) {
        throw HostError(
            where, Compose("the textures of the image together need more memory than the limit of ",
                           most >> 20, " MB"));
    }
    _bytes += image.Bytes.size();
    return image;
}

} // namespace Mox::Host
