#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Reads the input of a fuzz target as a sequence of choices. After its end, every choice is the
/// first one.
class Choices
{
public:
    Choices(const std::uint8_t* data, std::size_t size)
        : _bytes(reinterpret_cast<const char*>(data), size)
    {}

    bool IsAtEnd() const { return _bytes.empty(); }

    /// Returns a number below end, which must be at most 256.
    std::size_t Below(std::size_t end)
    {
        if (_bytes.empty())
            return 0;
        const auto byte = static_cast<unsigned char>(_bytes.front());
        _bytes.remove_prefix(1);
        return byte % end;
    }

    bool Flip() { return Below(2) == 1; }

    /// Returns the string up to the next null byte or to the end.
    std::string Text()
    {
        const std::size_t end = _bytes.find('\0');
        const std::string text(_bytes.substr(0, end));
        _bytes.remove_prefix(end == std::string_view::npos ? _bytes.size() : end + 1);
        return text;
    }

    std::string_view Rest() const { return _bytes; }

private:
    std::string_view _bytes;
};
