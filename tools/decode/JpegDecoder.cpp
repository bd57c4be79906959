#include "mox/decode/DecodedFile.h"
#include "tools/decode/ImageDecoder.h"

#include <memory>
#include <new>
#include <turbojpeg.h>

namespace Mox::Host {

namespace {

/// Converts from CMYK. Print files store the fraction of light that each ink transmits, times 255.
void ConvertFromInks(TextureImage& image)
{
    constexpr unsigned int brightest = 255;
    for (std::size_t texel = 0; texel < image.Bytes.size(); texel += 4) {
        std::byte* components = image.Bytes.data() + texel;
        const auto black = std::to_integer<unsigned int>(components[3]);
        for (std::size_t i = 0; i < 3; ++i) {
            components[i] = static_cast<std::byte>(
                (std::to_integer<unsigned int>(components[i]) * black + brightest / 2) / brightest);
        }
        components[3] = static_cast<std::byte>(brightest);
    }
}

} // namespace

TextureImage DecodeJpeg(FileBytes file, const DecodeLimits& limits)
{
    const std::unique_ptr<void, decltype(&tjDestroy)> decoder(tjInitDecompress(), tjDestroy);
    if (!decoder)
        throw std::bad_alloc();
    const auto require = [&](int status) {
        if (status != 0)
            throw DecodeError(tjGetErrorStr2(decoder.get()));
    };
    const auto* bytes = reinterpret_cast<const unsigned char*>(file.data());
    int width = 0;
    int height = 0;
    int subsampling = 0;
    int colours = 0;
    require(tjDecompressHeader3(decoder.get(), bytes, file.size(), &width, &height, &subsampling,
                                &colours));
    TextureImage image = MakeImage(static_cast<std::uint64_t>(width),
                                   static_cast<std::uint64_t>(height), TexelFormat::Unorm8, limits);
    const bool hasInks = colours == TJCS_CMYK || colours == TJCS_YCCK;
    require(tjDecompress2(decoder.get(), bytes, file.size(),
                          reinterpret_cast<unsigned char*>(image.Bytes.data()), width, 0, height,
                          hasInks ? TJPF_CMYK : TJPF_RGBA,
                          TJFLAG_STOPONWARNING | TJFLAG_LIMITSCANS | TJFLAG_ACCURATEDCT));
    if (hasInks)
        ConvertFromInks(image);
    return image;
}

} // namespace Mox::Host
