#include "tools/decode/ImageDecoder.h"

#include "mox/decode/DecodedFile.h"

#include <algorithm>
#include <string>

namespace Mox::Host {

namespace {

using std::to_string;

struct ImageFormat
{
    std::string_view Start;
    TextureImage (*Decode)(FileBytes, const DecodeLimits&);
};

constexpr ImageFormat formats[] = {
    {"\x89PNG\r\n\x1a\n", DecodePng}, {"\xff\xd8\xff", DecodeJpeg}, {"\x76\x2f\x31\x01", DecodeExr},
    {"#?RADIANCE\n", DecodeHdr},      {"#?RGBE\n", DecodeHdr},
};

} // namespace

bool StartsWith(FileBytes file, std::string_view start)
{
    return file.size() >= start.size() &&
           std::ranges::equal(file.first(start.size()), std::as_bytes(std::span(start)));
}

TextureImage MakeImage(std::uint64_t width, std::uint64_t height, TexelFormat format,
                       const DecodeLimits& limits)
{
    const std::string size = to_string(width) + " by " + to_string(height) + " texels";
    if (width == 0 || height == 0)
        throw DecodeError("an image of " + size + " is empty");
    if (width > limits.Side || height > limits.Side) {
        throw DecodeError("an image of " + size + " is larger than the limit of " +
                          to_string(limits.Side) + " on a side");
    }
    if (width * height > limits.Bytes / SizeOfTexel(format)) {
        throw DecodeError("an image of " + size + " takes more memory than the limit of " +
                          to_string(limits.Bytes >> 20) + " MB");
    }
    TextureImage image{
        static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), format, {}};
    image.Bytes.resize(width * height * SizeOfTexel(format));
    return image;
}

TextureImage DecodeImage(FileBytes file, const DecodeLimits& limits)
{
    const auto format = std::ranges::find_if(
        formats, [&](const ImageFormat& candidate) { return StartsWith(file, candidate.Start); });
    if (format == std::end(formats))
        throw DecodeError("it is not a PNG, JPEG, OpenEXR or HDR image");
    return format->Decode(file, limits);
}

} // namespace Mox::Host
