#pragma once

#include "mox/server/Beast.h"
#include "mox/server/EditorHub.h"
#include "mox/server/EditorServer.h"

namespace Mox::Host {

/// Decides when a server stops: when no page uses it any more, or when End is called.
class Lifetime
{
public:
    /// All arguments must outlive the object.
    /// @param context is stopped when the server stops
    /// @param hub closes its pages before that
    Lifetime(asio::io_context& context, EditorHub& hub, const ServerSettings& settings);

    /// Starts waiting for the first page.
    void Start() { WaitForPage(ServerEnd::NoPage, _settings.WithoutPage); }

    void PageCame();

    /// @param isGoodbye whether the page was closed on purpose
    void PageGone(bool isGoodbye);

    void End(ServerEnd why);

    bool IsEnding() const { return _isEnding; }
    ServerEnd Why() const { return _why; }

private:
    void WaitForPage(ServerEnd why, std::chrono::milliseconds time);

    asio::io_context& _context;
    EditorHub& _hub;
    const ServerSettings& _settings;
    asio::steady_timer _timer;
    bool _isEnding = false;
    ServerEnd _why = ServerEnd::Stopped;
};

} // namespace Mox::Host
