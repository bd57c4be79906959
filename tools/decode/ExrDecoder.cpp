#include "mox/decode/DecodedFile.h"
#include "tools/decode/ImageDecoder.h"

#include <OpenEXR/ImfArray.h>
#include <OpenEXR/ImfIO.h>
#include <OpenEXR/ImfRgbaFile.h>
#include <algorithm>
#include <array>
#include <cstring>

namespace Mox::Host {

namespace {

/// An in-memory file as an input stream for OpenEXR.
class ExrInput : public Imf::IStream
{
public:
    explicit ExrInput(FileBytes file) : IStream("image"), _file(file) {}

    bool read(char target[], int size) override
    {
        if (size < 0 || static_cast<std::size_t>(size) > _file.size() - _position)
            throw DecodeError("the file ends too early");
        std::memcpy(target, _file.data() + _position, static_cast<std::size_t>(size));
        _position += static_cast<std::size_t>(size);
        return _position < _file.size();
    }

    std::uint64_t tellg() override { return _position; }

    void seekg(std::uint64_t position) override
    {
        if (position > _file.size())
            throw DecodeError("the file ends too early");
        _position = position;
    }

private:
    FileBytes _file;
    std::size_t _position = 0;
};

/// Pixels from min to max, both included. The corners are arbitrary 32-bit numbers.
struct Window
{
    explicit Window(const Imath::Box2i& box)
        : Left(box.min.x), Top(box.min.y), Width(std::int64_t(box.max.x) - Left + 1),
          Height(std::int64_t(box.max.y) - Top + 1)
    {}

    std::int64_t Left;
    std::int64_t Top;
    std::int64_t Width;
    std::int64_t Height;
};

TextureImage MakeWindowImage(const Window& window, const DecodeLimits& limits)
{
    return MakeImage(static_cast<std::uint64_t>(std::max<std::int64_t>(window.Width, 0)),
                     static_cast<std::uint64_t>(std::max<std::int64_t>(window.Height, 0)),
                     TexelFormat::Float, limits);
}

TextureImage DecodePixels(FileBytes bytes, const DecodeLimits& limits)
{
    ExrInput input(bytes);
    // OpenEXR allocates tables of rows and tiles when it opens a file. MakeImage applies stricter
    // limits.
    constexpr int mostPixels = 1'000'000; // per side
    Imf::Header::setMaxImageSize(mostPixels, mostPixels);
    Imf::Header::setMaxTileSize(mostPixels, mostPixels);
    Imf::RgbaInputFile file(input, 1);
    const Window shown(file.displayWindow());
    const Window stored(file.dataWindow());
    TextureImage image = MakeWindowImage(shown, limits);
    MakeWindowImage(stored, limits);
    if ((file.channels() & (Imf::WRITE_RGB | Imf::WRITE_Y)) == 0)
        throw DecodeError("it contains none of the channels R, G, B and Y");
    Imf::Array<Imf::Rgba> pixels(stored.Width * stored.Height);
    // OpenEXR expects the address of the pixel at 0, 0, which need not exist.
    file.setFrameBuffer(&pixels[0] - stored.Left - stored.Top * stored.Width, 1,
                        static_cast<std::size_t>(stored.Width));
    file.readPixels(file.dataWindow().min.y, file.dataWindow().max.y);

    const std::int64_t left = std::max(shown.Left, stored.Left);
    const std::int64_t right = std::min(shown.Left + shown.Width, stored.Left + stored.Width);
    const std::int64_t top = std::max(shown.Top, stored.Top);
    const std::int64_t bottom = std::min(shown.Top + shown.Height, stored.Top + stored.Height);
    for (std::int64_t y = top; y < bottom; ++y) {
        for (std::int64_t x = left; x < right; ++x) {
            const Imf::Rgba& pixel = pixels[(y - stored.Top) * stored.Width + x - stored.Left];
            const std::array<float, 4> texel = {pixel.r, pixel.g, pixel.b, pixel.a};
            const std::int64_t index = (y - shown.Top) * shown.Width + x - shown.Left;
            std::memcpy(image.Bytes.data() + static_cast<std::size_t>(index) * sizeof(texel),
                        texel.data(), sizeof(texel));
        }
    }
    return image;
}

} // namespace

TextureImage DecodeExr(FileBytes file, const DecodeLimits& limits)
{
    try {
        return DecodePixels(file, limits);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw DecodeError(error.what());
    }
}

} // namespace Mox::Host
