#include "mox/batch/ContentHash.h"

#include <memory>
#include <new>
#include <xxhash.h>

namespace Mox::Host {

std::string HashContent(const std::vector<std::string>& texts)
{
    struct Free
    {
        void operator()(XXH3_state_t* state) const { XXH3_freeState(state); }
    };
    const std::unique_ptr<XXH3_state_t, Free> state(XXH3_createState());
    if (!state)
        throw std::bad_alloc();
    XXH3_128bits_reset(state.get());
    for (const std::string& text : texts) {
        // Lengths keep "a", "bc" apart from "ab", "c".
        const std::string length = std::to_string(text.size()) + ":";
        XXH3_128bits_update(state.get(), length.data(), length.size());
        XXH3_128bits_update(state.get(), text.data(), text.size());
    }
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, XXH3_128bits_digest(state.get()));
    constexpr char digits[] = "0123456789abcdef";
    std::string name;
    for (const unsigned char byte : bytes.digest) {
        name += digits[byte >> 4];
        name += digits[byte & 15];
    }
    return name;
}

} // namespace Mox::Host
