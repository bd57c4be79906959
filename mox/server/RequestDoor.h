#pragma once

#include "mox/server/Beast.h"
#include "mox/server/Page.h"
#include "mox/server/Token.h"

#include <cstdint>
#include <span>
#include <string>

namespace Mox::Host {

using RequestHeader = http::request_header<>;

/// How to answer a request.
struct Verdict
{
    http::status Status = http::status::forbidden;
    const Page* Answer = nullptr; ///< set if the status is "ok"
    bool IsSocket = false;        ///< if the status is "switching_protocols"
};

/// Decides which requests are allowed. Requests are untrusted: any web page in any browser on this
/// machine can send them, even under a host name that an attacker resolves to this machine.
class RequestDoor
{
public:
    /// @param port the one on which the server listens
    /// @param pages must outlive the object
    RequestDoor(std::uint16_t port, Token token, std::span<const Page> pages);

    Verdict Judge(const RequestHeader& request) const;

    /// Adds the headers that every response contains.
    /// @param nonce allows the inline styles of a page
    void AddPolicies(std::string_view nonce, http::fields& answer) const;

private:
    bool IsOwnHost(std::string_view host) const;
    http::status JudgeSocket(const RequestHeader& request) const;

    std::string _hosts[2];
    Token _token;
    std::span<const Page> _pages;
};

/// The protocol version, which clients request as a WebSocket subprotocol.
constexpr std::string_view socketProtocol = "mox-editor-1";

} // namespace Mox::Host
