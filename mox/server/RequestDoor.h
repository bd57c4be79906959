#pragma once

#include "mox/server/Beast.h"
#include "mox/server/Page.h"
#include "mox/server/Token.h"

#include <cstdint>
#include <span>
#include <string>

namespace Mox::Host {

using RequestHeader = http::request_header<>;

/// How a request is answered.
struct Verdict
{
    http::status Status = http::status::forbidden;
    const Page* Answer = nullptr; ///< set if the status is "ok"
    bool IsSocket = false;        ///< the status is "switching_protocols"
};

/// Decides which requests are allowed. A request may come from anybody: every page in every browser
/// on the machine can send one, also by a host name that an attacker resolves to this machine.
class RequestDoor
{
public:
    /// @param port on which the server listens
    /// @param pages must outlive the object
    RequestDoor(std::uint16_t port, Token token, std::span<const Page> pages);

    Verdict Judge(const RequestHeader& request) const;

    /// Adds the headers that every answer has.
    /// @param nonce allows the styles that a page writes itself
    void AddPolicies(std::string_view nonce, http::fields& answer) const;

private:
    bool IsOwnHost(std::string_view host) const;
    http::status JudgeSocket(const RequestHeader& request) const;

    std::string _hosts[2];
    Token _token;
    std::span<const Page> _pages;
};

/// The version of the protocol, which clients request as a WebSocket subprotocol.
constexpr std::string_view socketProtocol = "mox-editor-1";

} // namespace Mox::Host
