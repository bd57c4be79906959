#include "mox/server/MessageFrame.h"
#include "mox/server/RequestDoor.h"
#include "tests/support/Claim.h"

#include <cstdint>

using namespace Mox::Host;

namespace {

constexpr Page page = {"/", "text/html", "page"};

/// Whether the bytes contain the string.
bool Holds(std::string_view bytes, std::string_view text)
{
    return bytes.find(text) != bytes.npos;
}

} // namespace

/// The input is sent by an attacker who does not know the token, first as a request and then as a
/// binary message.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    static const RequestDoor door(7, Token(), {&page, 1});
    http::request_parser<http::empty_body> parser;
    beast::error_code error;
    parser.put(asio::buffer(bytes.data(), bytes.size()), error);
    if (!error && parser.is_header_done()) {
        const Verdict verdict = door.Judge(parser.get());
        Claim(!verdict.IsSocket, "the WebSocket is not opened without the token");
        Claim((verdict.Answer != nullptr) == (verdict.Status == http::status::ok),
              "an accepted request is answered with a page");
        if (verdict.Answer)
            Claim(Holds(bytes, "127.0.0.1:7") || Holds(bytes, "localhost:7"),
                  "only requests to this machine are accepted");
    }
    if (const auto parts = SplitBinary(bytes))
        Claim(parts->Json.size() + parts->Bytes.size() + 4 == size, "no byte is lost");
    return 0;
}
