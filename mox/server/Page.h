#pragma once

#include <span>
#include <string_view>

namespace Mox::Host {

/// A file that the server gives to everybody.
struct Page
{
    std::string_view Target; ///< of the request, as a whole
    std::string_view Type;
    std::string_view Content;
};

/// Stands in pages for the nonce of their content policy.
constexpr std::string_view nonceMark = "__NONCE__";

/// The pages of the editor; none if the program was built without them.
std::span<const Page> EmbeddedPages();

} // namespace Mox::Host
