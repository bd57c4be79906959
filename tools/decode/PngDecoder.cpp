#include "mox/decode/DecodedFile.h"
#include "tools/decode/ImageDecoder.h"

#include <bit>
#include <csetjmp>
#include <cstring>
#include <new>
#include <png.h>
#include <string>
#include <vector>

namespace Mox::Host {

namespace {

constexpr int depthOfWords = 16; ///< bits per component

/// Wraps libpng for one file. On an error, libpng jumps to the setjmp of the calling operation
/// without running destructors, so these operations must not define local objects.
class PngFile
{
public:
    explicit PngFile(FileBytes file) : _rest(file)
    {
        _png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning);
        _info = _png ? png_create_info_struct(_png) : nullptr;
        if (!_info) {
            png_destroy_read_struct(&_png, nullptr, nullptr);
            throw std::bad_alloc();
        }
        png_set_read_fn(_png, this, Read);
        png_set_user_limits(_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX); // MakeImage limits the size
    }

    ~PngFile() { png_destroy_read_struct(&_png, &_info, nullptr); }

    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    /// Reads the header, and configures the rows as red, green, blue, alpha.
    void ReadHeader()
    {
        if (setjmp(png_jmpbuf(_png)) != 0) // NOLINT(cert-err52-cpp)
            throw DecodeError(_error);
        png_read_info(_png, _info);
        png_set_expand(_png);
        png_set_gray_to_rgb(_png);
        png_set_add_alpha(_png, 0xffff, PNG_FILLER_AFTER);
        if (std::endian::native == std::endian::little)
            png_set_swap(_png);
        png_set_interlace_handling(_png);
        png_read_update_info(_png, _info);
    }

    /// @param rows one buffer per row of the image, each large enough for a row
    void ReadRows(std::vector<png_bytep>& rows)
    {
        if (setjmp(png_jmpbuf(_png)) != 0) // NOLINT(cert-err52-cpp)
            throw DecodeError(_error);
        png_read_image(_png, rows.data());
        png_read_end(_png, nullptr);
    }

    std::uint32_t Width() const { return png_get_image_width(_png, _info); }
    std::uint32_t Height() const { return png_get_image_height(_png, _info); }
    bool HasWords() const { return png_get_bit_depth(_png, _info) == depthOfWords; }

private:
    [[noreturn]] static void OnError(png_structp png, png_const_charp message)
    {
        static_cast<PngFile*>(png_get_error_ptr(png))->_error = message;
        png_longjmp(png, 1);
    }

    static void OnWarning(png_structp /*png*/, png_const_charp /*message*/) {}

    static void Read(png_structp png, png_bytep target, std::size_t size)
    {
        FileBytes& rest = static_cast<PngFile*>(png_get_io_ptr(png))->_rest;
        if (size > rest.size())
            png_error(png, "the file ends too early");
        std::memcpy(target, rest.data(), size);
        rest = rest.subspan(size);
    }

    FileBytes _rest; ///< unread part of the file
    std::string _error;
    png_structp _png = nullptr;
    png_infop _info = nullptr;
};

template <class Component>
void ReadComponents(PngFile& png, std::uint32_t width, std::uint32_t height, Component* components)
{
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < height; ++y)
        rows.push_back(reinterpret_cast<png_bytep>(components + y * width * 4));
    png.ReadRows(rows);
}

} // namespace

TextureImage DecodePng(FileBytes file, const DecodeLimits& limits)
{
    PngFile png(file);
    png.ReadHeader();
    const std::uint32_t width = png.Width();
    const std::uint32_t height = png.Height();
    if (!png.HasWords()) {
        TextureImage image = MakeImage(width, height, TexelFormat::Unorm8, limits);
        ReadComponents(png, width, height, image.Bytes.data());
        return image;
    }
    constexpr float brightest = 65535.0f;
    TextureImage image = MakeImage(width, height, TexelFormat::Float, limits);
    std::vector<std::uint16_t> words(std::size_t(width) * height * 4);
    ReadComponents(png, width, height, words.data());
    for (std::size_t i = 0; i < words.size(); ++i) {
        const float value = static_cast<float>(words[i]) / brightest;
        std::memcpy(image.Bytes.data() + i * sizeof(value), &value, sizeof(value));
    }
    return image;
}

} // namespace Mox::Host
