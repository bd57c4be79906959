#include "mox/server/PageSocket.h"

#include <utility>

namespace Mox::Host {

namespace websocket = beast::websocket;

namespace {

/// A page that is closed on purpose sends one of these codes; browsers send the second one when the
/// user leaves a page.
bool IsGoodbye(const websocket::close_reason& reason)
{
    return reason.code == websocket::close_code::normal ||
           reason.code == websocket::close_code::going_away;
}

} // namespace

PageSocket::PageSocket(beast::tcp_stream stream, Seat seat, ServerParts& parts)
    : _seat(std::move(seat)), _parts(parts), _stream(std::move(stream))
{
    _stream.next_layer().expires_never(); // the WebSocket has its own timeouts
    _stream.set_option(websocket::stream_base::timeout{parts.Settings.RequestTime,
                                                       parts.Settings.SilentTime, true});
    _stream.set_option(websocket::stream_base::decorator([](websocket::response_type& answer) {
        answer.set(http::field::sec_websocket_protocol,
                   {socketProtocol.data(), socketProtocol.size()});
    }));
    _stream.read_message_max(parts.Settings.BinaryBytes);
    _stream.auto_fragment(false);
    beast::error_code error; // ignored; without the option, messages are only delayed
    _stream.next_layer().socket().set_option(asio::ip::tcp::no_delay(true), error);
}

void PageSocket::Open(const http::request<http::empty_body>& request)
{
    _stream.async_accept(request, [self = shared_from_this()](beast::error_code error) {
        if (!error)
            self->Begin();
    });
}

void PageSocket::Begin()
{
    if (_parts.Hub.PageCount() >= _parts.Settings.PageCount) {
        Close({websocket::close_code::try_again_later, "too many pages are open"});
        return;
    }
    if (_parts.Life.IsEnding()) {
        End();
        return;
    }
    _number = _parts.Hub.Add(shared_from_this());
    _parts.Life.PageCame();
    Read();
}

void PageSocket::Read()
{
    _stream.async_read(_buffer, [self = shared_from_this()](beast::error_code error, std::size_t) {
        if (error) {
            self->Leave(error == websocket::error::closed && IsGoodbye(self->_stream.reason()));
            return;
        }
        // A message that had already arrived may be delivered after a failed write has ended the
        // page.
        if (self->_number != 0 && !self->_isClosing)
            self->Receive();
    });
}

void PageSocket::Receive()
{
    const auto data = _buffer.data();
    Handle({static_cast<const char*>(data.data()), data.size()});
    _buffer.consume(data.size());
    _buffer.shrink_to_fit();
    if (!_isClosing)
        Read();
}

void PageSocket::Handle(std::string_view content)
{
    BinaryParts parts = {content, {}};
    if (_stream.got_binary()) {
        const auto split = SplitBinary(content);
        if (!split) {
            Close({websocket::close_code::policy_error,
                   "the message is shorter than its length field states"});
            return;
        }
        parts = *split;
    }
    if (parts.Json.size() > _parts.Settings.TextBytes) {
        Close({websocket::close_code::too_big, "the message is too large"});
        return;
    }
    const bool mayWait = _jobCount < _parts.Settings.JobCount;
    if (_parts.Hub.Handle(_number, parts.Json, parts.Bytes, mayWait))
        ++_jobCount;
}

void PageSocket::Send(std::shared_ptr<const MessageFrame> frame)
{
    if (_unreadBytes > _parts.Settings.UnreadBytes) {
        _stream.next_layer()
            .close(); // a page that does not read would not receive a close message either
        return;
    }
    _unreadBytes += frame->Content.size();
    _frames.push_back(std::move(frame));
    if (_frames.size() == 1)
        Write();
}

void PageSocket::FinishJob(std::shared_ptr<const MessageFrame> frame)
{
    --_jobCount;
    Send(std::move(frame));
}

void PageSocket::End()
{
    Close({websocket::close_code::going_away, "the editor has ended"});
}

void PageSocket::Write()
{
    _stream.binary(_frames.front()->IsBinary);
    _stream.async_write(asio::buffer(_frames.front()->Content),
                        [self = shared_from_this()](beast::error_code error, std::size_t) {
                            if (self->_isClosing)
                                return;
                            if (error) {
                                self->_stream.next_layer().close();
                                self->Leave(false);
                                return;
                            }
                            self->_unreadBytes -= self->_frames.front()->Content.size();
                            self->_frames.pop_front();
                            if (!self->_frames.empty())
                                self->Write();
                        });
}

void PageSocket::Close(const websocket::close_reason& reason)
{
    if (std::exchange(_isClosing, true))
        return;
    _stream.async_close(reason, [self = shared_from_this()](beast::error_code) {
        self->_stream.next_layer().close();
        self->Leave(false);
    });
}

void PageSocket::Leave(bool isGoodbye)
{
    if (_number == 0)
        return;
    _parts.Hub.Remove(std::exchange(_number, 0));
    _parts.Life.PageGone(isGoodbye);
}

} // namespace Mox::Host
