#include "mox/host/ContentHash.h"

#include <memory>
#include <new>
#include <string_view>
#include <xxhash.h>

namespace Mox::Host {

std::string HexDigits(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += {digits[byte / 16], digits[byte % 16]};
    }
    return text;
}

std::string HashContent(const std::vector<std::string>& texts, const std::string& header)
{
    struct Free
    {
        void operator()(XXH3_state_t* state) const { XXH3_freeState(state); }
    };
    const std::unique_ptr<XXH3_state_t, Free> state(XXH3_createState());
    if (!state)
        throw std::bad_alloc();
    XXH3_128bits_reset(state.get());
    const auto add = [&](std::string_view part) {
        // Including the lengths distinguishes "a", "bc" from "ab", "c".
        const std::string length = std::to_string(part.size()) + ":";
        XXH3_128bits_update(state.get(), length.data(), length.size());
        XXH3_128bits_update(state.get(), part.data(), part.size());
    };
    for (const std::string_view text : texts) {
        const std::size_t at = header.empty() ? text.npos : text.find(header);
        add(text.substr(0, at));
        if (at != text.npos)
            add(text.substr(at + header.size()));
    }
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, XXH3_128bits_digest(state.get()));
    return HexDigits({reinterpret_cast<const char*>(bytes.digest), sizeof bytes.digest});
}

} // namespace Mox::Host
