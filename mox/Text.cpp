#include "mox/Text.h"

#include <array>
#include <charconv>

namespace Mox::Materials {

std::string FormatFloat(float value)
{
    constexpr int significantDigits = 6;
    std::array<char, 32> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::general, significantDigits);
    static_cast<void>(error); // the longest result, "-1.17549e-38", fits
    return {buffer.data(), end};
}

} // namespace Mox::Materials
