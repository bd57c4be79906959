#include "mox/server/Lifetime.h"

namespace Mox::Host {

Lifetime::Lifetime(asio::io_context& context, EditorHub& hub, const ServerSettings& settings)
    : _context(context), _hub(hub), _settings(settings), _timer(context)
{}

void Lifetime::PageCame()
{
    if (!_isEnding)
        _timer.cancel();
}

void Lifetime::PageGone(bool isGoodbye)
{
    if (_hub.PageCount() > 0)
        return;
    if (_isEnding)
        _context.stop();
    else if (isGoodbye)
        WaitForPage(ServerEnd::Goodbye, _settings.AfterGoodbye);
    else
        WaitForPage(ServerEnd::NoPage, _settings.WithoutPage);
}

void Lifetime::End(ServerEnd why)
{
    if (_isEnding)
        return;
    _isEnding = true;
    _why = why;
    if (_hub.PageCount() == 0)
        _context.stop();
    _hub.EndPages();
    constexpr std::chrono::seconds grace(1); // for pages that do not answer the close message
    _timer.expires_after(grace);
    _timer.async_wait([this](beast::error_code error) {
        if (!error)
            _context.stop();
    });
}

void Lifetime::WaitForPage(ServerEnd why, std::chrono::milliseconds time)
{
    _timer.expires_after(time);
    _timer.async_wait([this, why](beast::error_code error) {
        if (!error && _hub.PageCount() == 0) // a page may connect just as the timer expires
            End(why);
    });
}

} // namespace Mox::Host
