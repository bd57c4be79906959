#include "mox/preview/TextureLoader.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

TextureImage MakeStandIn(const TextureSettings& binding)
{
    const bool isNormal = binding.UsageHint == "Normal" || binding.UsageHint == "DXT5 Normal";
    return isNormal ? MakeFlatNormalImage() : MakeCheckerImage();
}

} // namespace

TextureLoader::TextureLoader(FileDecoder& files, std::filesystem::path folder,
                             std::uint32_t deviceSide, ProblemList& problems)
    : _files(files), _folder(std::move(folder)), _deviceSide(deviceSide), _problems(problems)
{}

std::vector<TextureImage> TextureLoader::Load(const TextureSettings& binding)
{
    if (!binding.File.empty()) {
        try {
            return MakeMipLevels(Read(_folder / binding.File), binding.IsSrgb);
        } catch (const HostError& error) {
            _problems.Warn("preview-texture", error.Where, error.Message);
        }
    }
    return MakeMipLevels(MakeStandIn(binding), binding.IsSrgb);
}

TextureImage TextureLoader::Read(const std::filesystem::path& file)
{
    constexpr std::uint64_t largestTextures = 2; // memory limit, in textures of the largest size
    const Place where{file.string()};
    const std::shared_ptr<const TextureImage> image = _files.ReadTexture(file);
    if (std::max(image->Width, image->Height) > _deviceSide) {
        throw HostError(where, Compose("a texture of ", image->Width, " by ", image->Height,
                                       " texels is larger than the Vulkan device's limit of ",
                                       _deviceSide, " on a side"));
    }
    const std::uint64_t most = largestTextures * _files.Limits().Bytes;
    if (image->Bytes.size() > most - _bytes) {
        throw HostError(where, Compose("the textures of the picture together take more memory than "
                                       "the limit of ",
                                       most >> 20, " MB"));
    }
    _bytes += image->Bytes.size();
    return *image;
}

} // namespace Mox::Host
