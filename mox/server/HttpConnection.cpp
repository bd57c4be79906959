#include "mox/server/HttpConnection.h"

#include "mox/server/PageSocket.h"

#include <boost/algorithm/string/replace.hpp>

#include <string>
#include <utility>

namespace Mox::Host {

HttpConnection::HttpConnection(asio::ip::tcp::socket socket, Seat seat, ServerParts& parts)
    : _seat(std::move(seat)), _parts(parts), _stream(std::move(socket)),
      _buffer(parts.Settings.HeaderBytes)
{
    _parser.header_limit(parts.Settings.HeaderBytes);
}

void HttpConnection::Start()
{
    _stream.expires_after(_parts.Settings.RequestTime); // for the request and its response together
    http::async_read_header(
        _stream, _buffer, _parser,
        [self = shared_from_this()](beast::error_code error, std::size_t) { self->Answer(error); });
}

void HttpConnection::Answer(beast::error_code error)
{
    if (error == http::error::header_limit || error == http::error::buffer_overflow) {
        Send(http::status::request_header_fields_too_large, nullptr);
    } else if (error.category() == beast::error_code(http::error::bad_method).category()) {
        Send(http::status::bad_request, nullptr);
    } else if (!error) {
        Judge();
    }
}

void HttpConnection::Judge()
{
    const Verdict verdict = _parts.Door.Judge(_parser.get());
    if (verdict.Status != http::status::forbidden && !_parser.is_done()) {
        Send(http::status::payload_too_large, nullptr); // the request has a body
        return;
    }
    if (verdict.IsSocket && _buffer.size() > 0) {
        Send(http::status::bad_request, nullptr); // the client sent data before the WebSocket was
                                                  // open
        return;
    }
    if (!verdict.IsSocket) {
        Send(verdict.Status, verdict.Answer);
        return;
    }
    const auto socket = std::make_shared<PageSocket>(std::move(_stream), std::move(_seat), _parts);
    socket->Open(_parser.get());
}

void HttpConnection::Send(http::status status, const Page* page)
{
    const std::string nonce = RandomDigits(16);
    _answer.result(status);
    _answer.version(11);
    _answer.keep_alive(false);
    _parts.Door.AddPolicies(nonce, _answer);
    if (page) {
        _answer.set(http::field::content_type, {page->Type.data(), page->Type.size()});
        _answer.body() = page->Content;
        boost::algorithm::replace_all(_answer.body(), nonceMark, nonce);
    } else {
        _answer.set(http::field::content_type, "text/plain; charset=utf-8");
        _answer.body() = std::to_string(static_cast<unsigned>(status)) + " " +
                         std::string(http::obsolete_reason(status)) + "\n";
    }
    _answer.prepare_payload();
    http::async_write(
        _stream, _answer, [self = shared_from_this()](beast::error_code, std::size_t) {
            beast::error_code error; // ignored; the client may have closed it already
            self->_stream.socket().shutdown(asio::ip::tcp::socket::shutdown_both, error);
        });
}

} // namespace Mox::Host
