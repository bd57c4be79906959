#pragma once

#include <span>
#include <string_view>

namespace Mox::Host {

/// A file that the server sends to any client.
struct Page
{
    std::string_view Target; ///< the complete request target
    std::string_view Type;
    std::string_view Content;
};

/// Placeholder in pages for the nonce of their content policy.
constexpr std::string_view nonceMark = "__NONCE__";

/// The pages of the editor; empty if the program was built without them.
std::span<const Page> EmbeddedPages();

} // namespace Mox::Host
