#pragma once

#include "mox/server/Beast.h"
#include "mox/server/EditorHub.h"
#include "mox/server/ServerParts.h"

#include <boost/beast/websocket.hpp>

#include <cstddef>
#include <deque>
#include <memory>

namespace Mox::Host {

/// The WebSocket of one page. The hub owns it until it is closed.
class PageSocket : public EditorPage, public std::enable_shared_from_this<PageSocket>
{
public:
    PageSocket(beast::tcp_stream stream, Seat seat, ServerParts& parts);

    /// Accepts the WebSocket request and serves the page from then on.
    void Open(const http::request<http::empty_body>& request);

    void Send(std::shared_ptr<const MessageFrame> frame) override;
    void FinishJob(std::shared_ptr<const MessageFrame> frame) override;
    void End() override;

private:
    void Begin();
    void Read();
    void Receive();
    void Handle(std::string_view content);
    void Write();
    void Close(const beast::websocket::close_reason& reason);
    void Leave(bool isGoodbye);

    Seat _seat;
    ServerParts& _parts;
    beast::websocket::stream<beast::tcp_stream> _stream;
    beast::flat_buffer _buffer;
    std::deque<std::shared_ptr<const MessageFrame>> _frames; ///< the first one is being sent
    std::size_t _unreadBytes = 0;                            ///< in the queued frames
    std::size_t _jobCount = 0;
    std::size_t _number = 0; ///< of the page; 0 if it is not in the hub
    bool _isClosing = false;
};

} // namespace Mox::Host
