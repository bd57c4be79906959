#include "mox/server/RequestDoor.h"

#include "mox/Text.h"

#include <boost/beast/websocket/rfc6455.hpp>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

std::string_view View(beast::string_view text)
{
    return {text.data(), text.size()};
}

/// Finds the value of a header that may appear at most once.
/// @returns nothing if it is missing; if it is repeated, a value that matches nothing
std::optional<std::string_view> Find(const RequestHeader& request, std::string_view name)
{
    const auto range = request.equal_range({name.data(), name.size()});
    if (range.first == range.second)
        return std::nullopt;
    return std::next(range.first) == range.second ? View(range.first->value()) : "several";
}

/// Whether the browser states that a page of another origin sent the request. A link to the start
/// page is harmless, because that page is the same for everybody and cannot be framed.
bool IsForeign(const RequestHeader& request)
{
    const auto site = Find(request, "Sec-Fetch-Site");
    if (!site || *site == "same-origin" || *site == "none")
        return false;
    return request.target() != "/" || Find(request, "Sec-Fetch-Mode") != "navigate" ||
           Find(request, "Sec-Fetch-Dest") != "document";
}

} // namespace

RequestDoor::RequestDoor(std::uint16_t port, Token token, std::span<const Page> pages)
    : _hosts{Compose("127.0.0.1:", port), Compose("localhost:", port)}, _token(std::move(token)),
      _pages(pages)
{}

Verdict RequestDoor::Judge(const RequestHeader& request) const
{
    if (request.version() != 11)
        return {http::status::http_version_not_supported};
    const auto host = Find(request, "Host");
    if (!host || !IsOwnHost(*host))
        return {http::status::forbidden};
    const auto origin = Find(request, "Origin");
    if ((origin && *origin != "http://" + std::string(*host)) || IsForeign(request))
        return {http::status::forbidden};
    if (request.method() != http::verb::get)
        return {http::status::method_not_allowed};
    if (request.target() == "/socket") {
        const http::status status = JudgeSocket(request);
        return {status, nullptr, status == http::status::switching_protocols};
    }
    const auto page = std::find_if(_pages.begin(), _pages.end(), [&](const Page& known) {
        return known.Target == View(request.target());
    });
    if (page == _pages.end())
        return {http::status::not_found};
    return {http::status::ok, &*page};
}

bool RequestDoor::IsOwnHost(std::string_view host) const
{
    return std::find(std::begin(_hosts), std::end(_hosts), host) != std::end(_hosts);
}

http::status RequestDoor::JudgeSocket(const RequestHeader& request) const
{
    if (!Find(request, "Origin")) // every browser sends it
        return http::status::forbidden;
    const std::string_view protocols = Find(request, "Sec-WebSocket-Protocol").value_or("");
    const std::string prefix = Compose(socketProtocol, ", ");
    if (!protocols.starts_with(prefix) || !_token.Matches(protocols.substr(prefix.size())))
        return http::status::forbidden;
    return beast::websocket::is_upgrade(request) ? http::status::switching_protocols
                                                 : http::status::upgrade_required;
}

void RequestDoor::AddPolicies(std::string_view nonce, http::fields& answer) const
{
    answer.set("Content-Security-Policy",
               Compose("default-src 'none'; script-src 'self'; style-src 'self' 'nonce-", nonce,
                       "'; img-src 'self' blob: data:; connect-src 'self' ws://", _hosts[0],
                       " ws://", _hosts[1],
                       "; frame-ancestors 'none'; base-uri 'none'; form-action 'none'"));
    answer.set("X-Content-Type-Options", "nosniff");
    answer.set("Cross-Origin-Resource-Policy", "same-origin");
    answer.set("Cross-Origin-Opener-Policy", "same-origin");
    answer.set("Referrer-Policy", "no-referrer");
    answer.set("Cache-Control", "no-store");
}

} // namespace Mox::Host
