// A reader for Radiance images. The only small library for them in Debian enters an infinite loop
// if a file is truncated.

#include "mox/decode/DecodedFile.h"
#include "tools/decode/ImageDecoder.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace Mox::Host {

namespace {

constexpr std::size_t channels = 4; ///< red, green, blue and their shared exponent

class HdrReader
{
public:
    explicit HdrReader(FileBytes file)
        : _rest(reinterpret_cast<const char*>(file.data()), file.size())
    {}

    TextureImage Read(const DecodeLimits& limits)
    {
        ReadVariables();
        TextureImage image = ReadSize(limits);
        std::vector<unsigned char> row(std::size_t(image.Width) * channels);
        for (std::size_t y = 0; y < image.Height; ++y) {
            ReadRow(row, image.Width);
            Store(row, image.Bytes.data() + y * image.Width * SizeOfTexel(image.Format));
        }
        return image;
    }

private:
    std::string_view ReadLine()
    {
        const std::size_t end = _rest.find('\n');
        if (end == _rest.npos)
            throw DecodeError("the header is incomplete");
        const std::string_view line = _rest.substr(0, end);
        _rest.remove_prefix(end + 1);
        return line;
    }

    /// Reads the lines before the size. Exposure and similar variables are left to the material.
    void ReadVariables()
    {
        bool hasFormat = false;
        for (std::string_view line = ReadLine(); !line.empty(); line = ReadLine())
            hasFormat = hasFormat || line == "FORMAT=32-bit_rle_rgbe";
        if (!hasFormat)
            throw DecodeError("its format is not 32-bit_rle_rgbe");
    }

    TextureImage ReadSize(const DecodeLimits& limits)
    {
        std::string_view line = ReadLine();
        const auto takeWord = [&](std::string_view word) {
            const bool isThere = line.starts_with(word);
            line.remove_prefix(isThere ? word.size() : 0);
            return isThere;
        };
        const auto takeNumber = [&]() -> std::optional<std::uint32_t> {
            std::uint32_t number = 0;
            const auto [end, error] =
                std::from_chars(line.data(), line.data() + line.size(), number);
            if (error != std::errc())
                return std::nullopt;
            line.remove_prefix(static_cast<std::size_t>(end - line.data()));
            return number;
        };
        if (takeWord("-Y ")) {
            const auto height = takeNumber();
            if (height && takeWord(" +X ")) {
                if (const auto width = takeNumber(); width && line.empty())
                    return MakeImage(*width, *height, TexelFormat::Float, limits);
            }
        }
        throw DecodeError("its size does not have the form \"-Y height +X width\"");
    }

    unsigned char TakeByte()
    {
        if (_rest.empty())
            throw DecodeError("the file ends too early");
        const auto byte = static_cast<unsigned char>(_rest.front());
        _rest.remove_prefix(1);
        return byte;
    }

    /// Consumes the mark of a packed row, if present. Rows of certain widths may be packed, channel
    /// by channel; they begin with two bytes of value 2 and the width.
    bool TakePackedMark(std::uint32_t width)
    {
        constexpr std::uint32_t narrowest = 8;
        constexpr std::uint32_t widest = 0x7fff;
        const std::array<char, 4> mark = {2, 2, static_cast<char>(width >> 8),
                                          static_cast<char>(width & 0xff)};
        const bool isPacked = width >= narrowest && width <= widest &&
                              _rest.starts_with(std::string_view(mark.data(), mark.size()));
        _rest.remove_prefix(isPacked ? mark.size() : 0);
        return isPacked;
    }

    void ReadRow(std::vector<unsigned char>& row, std::uint32_t width)
    {
        if (!TakePackedMark(width)) {
            for (unsigned char& component : row)
                component = TakeByte();
            return;
        }
        for (std::size_t channel = 0; channel < channels; ++channel) {
            for (std::size_t x = 0; x < width;) {
                // Codes up to 128 are the number of literal bytes that follow; larger codes repeat
                // one byte.
                constexpr std::size_t mostBytes = 128;
                const std::size_t code = TakeByte();
                const bool isRun = code > mostBytes;
                const std::size_t count = isRun ? code - mostBytes : code;
                if (count == 0 || count > width - x)
                    throw DecodeError("the compressed data of a row is invalid");
                unsigned char byte = isRun ? TakeByte() : 0;
                for (std::size_t i = 0; i < count; ++i) {
                    byte = isRun ? byte : TakeByte();
                    row[x++ * channels + channel] = byte;
                }
            }
        }
    }

    static void Store(const std::vector<unsigned char>& row, std::byte* target)
    {
        constexpr int exponentOfOne = 128 + 8; // for an 8-bit mantissa
        for (std::size_t i = 0; i < row.size(); i += channels) {
            const float scale =
                row[i + 3] == 0 ? 0.0f : std::ldexp(1.0f, row[i + 3] - exponentOfOne);
            const std::array<float, channels> texel = {
                static_cast<float>(row[i]) * scale, static_cast<float>(row[i + 1]) * scale,
                static_cast<float>(row[i + 2]) * scale, 1.0f};
            std::memcpy(target + i * sizeof(float), texel.data(), sizeof(texel));
        }
    }

    std::string_view _rest; ///< unread part of the file
};

} // namespace

TextureImage DecodeHdr(FileBytes file, const DecodeLimits& limits)
{
    return HdrReader(file).Read(limits);
}

} // namespace Mox::Host
