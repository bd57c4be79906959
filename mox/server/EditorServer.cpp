#include "mox/server/EditorServer.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/server/HttpConnection.h"

#include <boost/asio/post.hpp>
#include <boost/noncopyable.hpp>

#include <utility>

namespace Mox::Host {

using asio::ip::tcp;
using Materials::Compose;

/// Accepts connections and periodically checks the document's file.
class EditorServer::Listener : private boost::noncopyable
{
public:
    Listener(EditorSession& session, const ServerSettings& settings)
        : _settings(settings), _acceptor(_context), _pause(_context), _lookTimer(_context),
          _door(Bind(settings.Port), _token, settings.Pages),
          _hub(session,
               [this](std::function<void()> call) { asio::post(_context, std::move(call)); }),
          _life(_context, _hub, _settings)
    {}

    std::uint16_t Port() const { return _acceptor.local_endpoint().port(); }
    const Token& Secret() const { return _token; }

    ServerEnd Run(const std::stop_token& stop)
    {
        const std::stop_callback callback(
            stop, [this] { asio::post(_context, [this] { _life.End(ServerEnd::Stopped); }); });
        _life.Start();
        Accept();
        LookLater();
        _context.run();
        return _life.Why();
    }

private:
    std::uint16_t Bind(std::uint16_t port)
    {
        const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), port);
        beast::error_code error;
        _acceptor.open(endpoint.protocol(), error);
        if (!error)
            _acceptor.set_option(tcp::acceptor::reuse_address(true), error);
        if (!error)
            _acceptor.bind(endpoint, error);
        if (!error)
            _acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error)
            throw HostError({}, Compose("cannot listen on port ", port, ": ", error.message()));
        return Port();
    }

    void Accept()
    {
        _acceptor.async_accept([this](beast::error_code error, tcp::socket socket) {
            if (error) {
                AcceptLater();
                return;
            }
            if (_seats < _settings.ConnectionCount) {
                std::make_shared<HttpConnection>(std::move(socket),
                                                 std::make_unique<TakenSeat>(_seats), _parts)
                    ->Start();
            } // else it is closed immediately
            Accept();
        });
    }

    /// Retries after a failure, for example when the process has run out of descriptors.
    void AcceptLater()
    {
        _pause.expires_after(std::chrono::milliseconds(100));
        _pause.async_wait([this](beast::error_code) { Accept(); });
    }

    void LookLater()
    {
        _lookTimer.expires_after(_settings.FileLookTime);
        _lookTimer.async_wait([this](beast::error_code) {
            if (_hub.PageCount() > 0)
                _hub.LookAtFile();
            LookLater();
        });
    }

    const ServerSettings _settings;
    const Token _token;
    std::size_t _seats = 0; // outlives the connections, which decrement it
    asio::io_context _context{1};
    tcp::acceptor _acceptor;
    asio::steady_timer _pause;
    asio::steady_timer _lookTimer;
    const RequestDoor _door;
    EditorHub _hub;
    Lifetime _life;
    ServerParts _parts{_settings, _door, _hub, _life};
};

EditorServer::EditorServer(EditorSession& session, const ServerSettings& settings)
    : _listener(std::make_unique<Listener>(session, settings))
{}

EditorServer::~EditorServer() = default;

std::uint16_t EditorServer::Port() const
{
    return _listener->Port();
}

std::string EditorServer::Address() const
{
    return Compose("http://127.0.0.1:", Port(), "/#", _listener->Secret().Text());
}

ServerEnd EditorServer::Run(const std::stop_token& stop)
{
    return _listener->Run(stop);
}

} // namespace Mox::Host
