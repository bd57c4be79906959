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

/// A server for a material with one node, "n0", which runs on its own thread.
class RunningServer
{
public:
    explicit RunningServer(const Mox::Host::ServerSettings& settings = TestServerSettings());

    ~RunningServer() { _stop.request_stop(); }

    std::uint16_t Port() const { return _server.Port(); }
    std::string Token() const;

    /// @returns why the server stopped; waits until it stops by itself
    Mox::Host::ServerEnd Await() { return _end.get(); }
    Mox::Host::ServerEnd Stop();

    /// Whether the server has stopped.
    bool IsOver() const;

    const TemporaryFolder& Folder() const { return _folder; }

    /// May be used only while the server is not running.
    Mox::Host::EditorSession& Session() { return _session; }

private:
    TemporaryFolder _folder;
    Mox::Host::EditorSession _session;
    Mox::Host::EditorServer _server;
    std::stop_source _stop;
    std::future<Mox::Host::ServerEnd> _end; // joins before the server is destroyed
};

/// A connection that sends arbitrary bytes.
class RawClient
{
public:
    explicit RawClient(std::uint16_t port);

    void Send(std::string_view bytes);

    /// Reads up to the end of a header.
    std::string ReadHeader();

    /// Reads until the peer closes the connection.
    std::string ReadAll();

private:
    Mox::Host::asio::io_context _context;
    Mox::Host::asio::ip::tcp::socket _socket;
};

/// Behaves like a page in a browser.
class PageClient
{
public:
    /// @throws boost::system::system_error if the connection is refused
    PageClient(std::uint16_t port, const std::string& token);

    void Send(const Mox::Host::Json& message);
    void Send(const Mox::Host::Json& message, const std::string& bytes);

    /// Receives the next message and its binary data.
    Mox::Host::Json Receive(std::string* bytes = nullptr);

    /// @returns the reply; notices before it are dropped
    Mox::Host::Json Ask(const Mox::Host::Json& message, std::string* bytes = nullptr);

    /// Waits until the server closes the connection.
    /// @returns the close code; 0 if there is none
    unsigned AwaitClose();

    void SayGoodbye();

    /// Cuts the connection.
    void Vanish();

    boost::beast::websocket::stream<Mox::Host::asio::ip::tcp::socket>& Stream() { return _stream; }

private:
    Mox::Host::asio::io_context _context;
    boost::beast::websocket::stream<Mox::Host::asio::ip::tcp::socket> _stream;
};
