#include "DecodeOptions.h"

#include "NumberCheck.h"

#include <cstdint>

namespace Mox::Tool {

void AddDecodeOptions(CLI::App& command, Host::DecodeLimits& limits)
{
    constexpr std::int32_t largestSide = 1'000'000;
    constexpr std::int32_t mostMegabytes = 1'000'000;
    constexpr std::int32_t mostSeconds = 86'400;
    constexpr int bitsOfMegabyte = 20;
    const auto add = [&](const char* name, const char* help, const char* unit, std::int32_t most,
                         std::uint64_t now, const std::function<void(std::uint64_t)>& set) {
        command.add_option_function<std::uint64_t>(name, set, help)
            ->type_name(unit)
            ->transform(IntegerIn(1, most))
            ->default_str(std::to_string(now))
            ->group("Limits for textures and meshes");
    };
    add("--max-texture", "Maximum width and height of a texture", "TEXELS", largestSide,
        limits.Side,
        [&limits](std::uint64_t side) { limits.Side = static_cast<std::uint32_t>(side); });
    add("--max-decoded", "Maximum memory for a decoded file, and maximum file size", "MB",
        mostMegabytes, limits.Bytes >> bitsOfMegabyte,
        [&limits](std::uint64_t megabytes) { limits.Bytes = megabytes << bitsOfMegabyte; });
    add("--max-decode-time", "Maximum time to decode a file", "SECONDS", mostSeconds,
        limits.Seconds,
        [&limits](std::uint64_t seconds) { limits.Seconds = static_cast<std::uint32_t>(seconds); });
}

} // namespace Mox::Tool
