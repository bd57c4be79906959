#include "tests/server/RunningServer.h"

#include "mox/server/MessageFrame.h"
#include "tests/support/TestEditor.h"

#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

using namespace Mox::Host;
using asio::ip::tcp;

namespace {

constexpr Page pages[] = {
    {"/", "text/html; charset=utf-8", "<meta name=\"nonce\" content=\"__NONCE__\">"},
    {"/app.js", "text/javascript; charset=utf-8", "start();"},
};

tcp::endpoint Endpoint(std::uint16_t port)
{
    return {asio::ip::address_v4::loopback(), port};
}

} // namespace

ServerSettings TestServerSettings()
{
    ServerSettings settings;
    settings.Pages = pages;
    settings.FileLookTime = std::chrono::milliseconds(10);
    return settings;
}

RunningServer::RunningServer(const ServerSettings& settings)
    : _session(_folder.Write("m.xml", R"(<material version="1"><nodes>
                   <node id="n0" type="CoreConstant" version="0"/></nodes></material>)"),
               TestEditorServices()),
      _server(_session, settings),
      _end(std::async(std::launch::async, [this] { return _server.Run(_stop.get_token()); }))
{}

std::string RunningServer::Token() const
{
    const std::string address = _server.Address();
    return address.substr(address.find('#') + 1);
}

ServerEnd RunningServer::Stop()
{
    _stop.request_stop();
    return Await();
}

bool RunningServer::IsOver() const
{
    return _end.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

RawClient::RawClient(std::uint16_t port) : _socket(_context)
{
    _socket.connect(Endpoint(port));
}

void RawClient::Send(std::string_view bytes)
{
    beast::error_code error;
    asio::write(_socket, asio::buffer(bytes.data(), bytes.size()), error);
}

std::string RawClient::ReadHeader()
{
    std::string text;
    beast::error_code error;
    asio::read_until(_socket, asio::dynamic_buffer(text), "\r\n\r\n", error);
    return text;
}

std::string RawClient::ReadAll()
{
    std::string text;
    beast::error_code error;
    asio::read(_socket, asio::dynamic_buffer(text), error);
    return text;
}

PageClient::PageClient(std::uint16_t port, const std::string& token) : _stream(_context)
{
    _stream.next_layer().connect(Endpoint(port));
    _stream.set_option(
        beast::websocket::stream_base::decorator([&](beast::websocket::request_type& request) {
            request.set("Origin", "http://127.0.0.1:" + std::to_string(port));
            request.set("Sec-WebSocket-Protocol", "mox-editor-1, " + token);
        }));
    _stream.read_message_max(0);
    _stream.handshake("127.0.0.1:" + std::to_string(port), "/socket");
}

void PageClient::Send(const Json& message)
{
    _stream.text(true);
    _stream.write(asio::buffer(FormatJson(message)));
}

void PageClient::Send(const Json& message, const std::string& bytes)
{
    const std::string json = FormatJson(message);
    _stream.binary(true);
    _stream.write(
        asio::buffer(std::string{static_cast<char>(json.size()), 0, 0, 0} + json + bytes));
}

Json PageClient::Receive(std::string* bytes)
{
    beast::flat_buffer buffer;
    _stream.read(buffer);
    const std::string_view content(static_cast<const char*>(buffer.data().data()), buffer.size());
    if (!_stream.got_binary())
        return Json::parse(content);
    const auto parts = SplitBinary(content);
    if (bytes)
        *bytes = parts.value().Bytes;
    return Json::parse(parts.value().Json);
}

Json PageClient::Ask(const Json& message, std::string* bytes)
{
    Send(message);
    Json answer = Receive(bytes);
    while (answer.contains("event"))
        answer = Receive(bytes);
    return answer;
}

unsigned PageClient::AwaitClose()
{
    beast::error_code error;
    for (beast::flat_buffer buffer; !error; buffer.clear())
        _stream.read(buffer, error);
    return error == beast::websocket::error::closed ? _stream.reason().code : 0;
}

void PageClient::SayGoodbye()
{
    _stream.close(beast::websocket::close_code::going_away);
}

void PageClient::Vanish()
{
    _stream.next_layer().close();
}
