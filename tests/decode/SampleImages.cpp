#include "SampleImages.h"

#include "mox/Text.h"

#include <OpenEXR/ImfIO.h>
#include <OpenEXR/ImfRgbaFile.h>
#include <cstring>
#include <png.h>
#include <turbojpeg.h>
#include <zlib.h>

namespace {

/// Collects the file that OpenEXR writes in memory.
class ExrOutput : public Imf::OStream
{
public:
    ExrOutput() : OStream("sample") {}

    void write(const char bytes[], int size) override
    {
        const auto count = static_cast<std::size_t>(size);
        Bytes.resize(std::max(Bytes.size(), _position + count));
        std::memcpy(Bytes.data() + _position, bytes, count);
        _position += count;
    }

    std::uint64_t tellp() override { return _position; }
    void seekp(std::uint64_t position) override { _position = position; }

    std::string Bytes;

private:
    std::size_t _position = 0;
};

std::string EncodePng(std::uint32_t width, std::uint32_t height, png_uint_32 depth,
                      const void* rows, std::size_t rowSize)
{
    std::string file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep bytes, std::size_t size) {
            static_cast<std::string*>(png_get_io_ptr(writer))
                ->append(reinterpret_cast<const char*>(bytes), size);
        },
        nullptr);
    png_set_IHDR(png, info, width, height, static_cast<int>(depth), PNG_COLOR_TYPE_RGBA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_swap(png);
    for (std::uint32_t y = 0; y < height; ++y)
        png_write_row(png, static_cast<const png_byte*>(rows) + y * rowSize);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::string BigEndian(std::uint32_t number)
{
    return {static_cast<char>(number >> 24), static_cast<char>(number >> 16),
            static_cast<char>(number >> 8), static_cast<char>(number)};
}

} // namespace

std::string MakePng(std::uint32_t width, std::uint32_t height,
                    const std::vector<std::uint8_t>& components)
{
    return EncodePng(width, height, 8, components.data(), std::size_t(width) * 4);
}

std::string MakePng16(std::uint32_t width, std::uint32_t height,
                      const std::vector<std::uint16_t>& components)
{
    return EncodePng(width, height, 16, components.data(), std::size_t(width) * 8);
}

std::string MakeJpeg(std::uint32_t width, std::uint32_t height,
                     const std::vector<std::uint8_t>& components)
{
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const tjhandle encoder = tjInitCompress();
    tjCompress2(encoder, components.data(), static_cast<int>(width), 0, static_cast<int>(height),
                TJPF_RGBA, &bytes, &size, TJSAMP_444, 100, 0);
    const std::string file(reinterpret_cast<const char*>(bytes), size);
    tjFree(bytes);
    tjDestroy(encoder);
    return file;
}

std::string MakeExr(std::uint32_t width, std::uint32_t height, const std::vector<float>& components,
                    int left, int top)
{
    std::vector<Imf::Rgba> pixels;
    for (std::size_t i = 0; i < components.size(); i += 4) {
        pixels.emplace_back(components[i], components[i + 1], components[i + 2], components[i + 3]);
    }
    const Imath::Box2i shown({0, 0}, {static_cast<int>(width) - 1, static_cast<int>(height) - 1});
    const Imath::V2i shift(left, top);
    ExrOutput output;
    {
        Imf::RgbaOutputFile file(
            output, Imf::Header(shown, Imath::Box2i(shown.min + shift, shown.max + shift)),
            Imf::WRITE_RGBA);
        file.setFrameBuffer(pixels.data() - left - std::ptrdiff_t(top) * width, 1, width);
        file.writePixels(static_cast<int>(height));
    }
    return output.Bytes;
}

std::string MakePngHeader(std::uint32_t width, std::uint32_t height)
{
    const std::string chunk =
        "IHDR" + BigEndian(width) + BigEndian(height) + std::string("\x08\x06\0\0\0", 5);
    const auto sum = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(chunk.data()), static_cast<uInt>(chunk.size())));
    return "\x89PNG\r\n\x1a\n" + BigEndian(13) + chunk + BigEndian(sum) + BigEndian(0) + "IDAT";
}

std::string MakeJpegHeader(std::uint32_t width, std::uint32_t height)
{
    // The header of a small image, with a different size in its frame segment.
    std::string file = MakeJpeg(1, 1, {255, 255, 255, 255});
    const std::size_t frame = file.find("\xff\xc0") + 5;
    file.replace(frame, 2, BigEndian(height).substr(2));
    file.replace(frame + 2, 2, BigEndian(width).substr(2));
    return file;
}

std::string MakeHdrHeader(int width, int height)
{
    return Mox::Materials::Compose("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y ", height, " +X ",
                                   width, "\n");
}
