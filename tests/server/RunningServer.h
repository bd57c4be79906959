#pragma once

#include "mox/server/Beast.h"
#include "mox/server/EditorServer.h"
#include "tests/support/TemporaryFolder.h"

#include <boost/beast/websocket.hpp>

#include <filesystem>
#include <future>
#include <stop_token>
#include <string>
#include <string_view>

/// Settings that serve two small pages.
Mox::Host::ServerSettings TestServerSettings();

/// A server on a material of one node, "n0", which runs on a thread of its own.
class RunningServer
{
public:
    explicit RunningServer(const Mox::Host::ServerSettings& settings = TestServerSettings());

    ~RunningServer() { _stop.request_stop(); }

    std::uint16_t Port() const { return _server.Port(); }
    std::string Token() const;

    /// @returns why it has ended; waits until it does so by itself
    Mox::Host::ServerEnd Await() { return _end.get(); }
    Mox::Host::ServerEnd Stop();

    /// Whether it has ended by now.
    bool IsOver() const;

    const TemporaryFolder& Folder() const { return _folder; }

    /// To be used while the server does not run.
    Mox::Host::EditorSession& Session() { return _session; }

private:
    TemporaryFolder _folder;
    Mox::Host::EditorSession _session;
    Mox::Host::EditorServer _server;
    std::stop_source _stop;
    std::future<Mox::Host::ServerEnd> _end; // waits before the server goes
};

/// A connection that sends any bytes.
class RawClient
{
public:
    explicit RawClient(std::uint16_t port);

    /// @returns whether all of it could be sent
    bool Send(std::string_view bytes);

    /// What comes until the end of a header.
    std::string ReadHeader();

    /// What comes until the other side ends the connection.
    std::string ReadAll();

private:
    Mox::Host::asio::io_context _context;
    Mox::Host::asio::ip::tcp::socket _socket;
};

/// What a page in a browser does.
class PageClient
{
public:
    /// @throws boost::system::system_error if it is not let in
    PageClient(std::uint16_t port, const std::string& token);

    void Send(const Mox::Host::Json& message);
    void SendBinary(const std::string& content);

    /// The next message, and what went along with it.
    Mox::Host::Json Receive(std::string* bytes = nullptr);

    /// @returns the answer; notices before it are dropped
    Mox::Host::Json Ask(const Mox::Host::Json& message, std::string* bytes = nullptr);

    /// Waits until the server closes the connection.
    /// @returns the code that it gave; 0 if it gave none
    unsigned AwaitClose();

    void SayGoodbye();

    /// Cuts the connection.
    void Vanish();

    boost::beast::websocket::stream<Mox::Host::asio::ip::tcp::socket>& Stream() { return _stream; }

private:
    Mox::Host::asio::io_context _context;
    boost::beast::websocket::stream<Mox::Host::asio::ip::tcp::socket> _stream;
};
