#pragma once

#include "mox/server/Beast.h"
#include "mox/server/ServerParts.h"

#include <memory>

namespace Mox::Host {

/// A connection for a single request and its response. It keeps itself alive until the response has
/// been sent or the connection has been upgraded to the WebSocket of a page.
class HttpConnection : public std::enable_shared_from_this<HttpConnection>
{
public:
    HttpConnection(asio::ip::tcp::socket socket, Seat seat, ServerParts& parts);

    void Start();

private:
    void Answer(beast::error_code error);
    void Judge();
    void Send(http::status status, const Page* page);

    Seat _seat;
    ServerParts& _parts;
    beast::tcp_stream _stream;
    beast::flat_buffer _buffer;
    http::request_parser<http::empty_body> _parser;
    http::response<http::string_body> _answer;
};

} // namespace Mox::Host
