#pragma once

#include <span>
#include <string_view>

namespace Mox::Host {

/// A file that the server sends to anybody.
struct Page
{
    std::string_view Target; ///< the whole target of its request
    std::string_view Type;
    std::string_view Content;
};

/// Placeholder in pages for the nonce of their content policy.
constexpr std::string_view nonceMark = "__NONCE__";

/// The pages of the editor; none if the program was built without them.
std::span<const Page> EmbeddedPages();

} // namespace Mox::Host
