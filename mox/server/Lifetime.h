#pragma once

#include "mox/server/Beast.h"
#include "mox/server/EditorHub.h"
#include "mox/server/EditorServer.h"

namespace Mox::Host {

/// Decides how long a server runs: it ends when no page uses it any more, or when it is told to.
class Lifetime
{
public:
    /// @param context whose run ends with the server
    /// @param hub whose pages are told of the end
    /// @param settings must outlive the object, as the others
    Lifetime(asio::io_context& context, EditorHub& hub, const ServerSettings& settings);

    /// Begins to wait for the first page.
    void Start() { WaitForPage(ServerEnd::NoPage, _settings.WithoutPage); }

    void PageCame();

    /// @param isGoodbye whether the page went on purpose
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
