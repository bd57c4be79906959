#include "tests/server/RunningServer.h"

#include <boost/algorithm/string/replace.hpp>
#include <gtest/gtest.h>

#include <fstream>

using namespace Mox::Host;

namespace {

/// Expands placeholders to the headers that a page sends, and those for opening the WebSocket.
std::string Expand(std::string text, const RunningServer& server)
{
    const std::string port = std::to_string(server.Port());
    const std::pair<const char*, std::string> replacements[] = {
        {"{upgrade}", "Connection: Upgrade\nUpgrade: websocket\nSec-WebSocket-Version: 13\n"
                      "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ=="},
        {"{host}", "Host: 127.0.0.1:" + port},
        {"{origin}", "Origin: http://127.0.0.1:" + port},
        {"{navigation}", "Sec-Fetch-Site: cross-site\nSec-Fetch-Mode: navigate"},
        {"{secret}", "{protocol}1, {token}"},
        {"{protocol}", "Sec-WebSocket-Protocol: mox-editor-"},
        {"{tls}", "\x16\x03\x01\x02"},
        {"{long}", std::string(20'000, 'x')},
        {"{zeros}", std::string(64, '0')},
        {"{port}", port},
        {"{token}", server.Token()},
        {" | ", "\n"},
        {"\n", "\r\n"}};
    text += "\n\n";
    for (const auto& [name, replacement] : replacements)
        boost::algorithm::replace_all(text, name, replacement);
    return text;
}

TEST(Attacks, RequestsAreLetInOrRefused)
{
    RunningServer server;
    std::ifstream file(MOX_TEST_DATA "/server/requests.txt");
    int count = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.starts_with("#"))
            continue;
        ++count;
        const std::string status = line.substr(0, 3);
        const std::string request = Expand(line.substr(4), server);
        SCOPED_TRACE(request.substr(0, 300));
        RawClient client(server.Port());
        client.Send(request);
        const std::string answer = status == "101" ? client.ReadHeader() : client.ReadAll();
        EXPECT_EQ(answer.substr(0, 12), "HTTP/1.1 " + status);
        EXPECT_EQ(answer.find(server.Token()), answer.npos);
        for (const char* word : {"Access-Control", "Set-Cookie", "m.xml"})
            EXPECT_EQ(answer.find(word), answer.npos) << word;
        if (status == "101")
            continue;
        for (const char* word :
             {"default-src 'none'; script-src 'self'; style-src 'self' 'nonce-",
              "frame-ancestors 'none'", "X-Content-Type-Options: nosniff",
              "Cross-Origin-Resource-Policy: same-origin", "Referrer-Policy: no-referrer",
              "Cache-Control: no-store", "Connection: close"})
            EXPECT_NE(answer.find(word), answer.npos) << word;
    }
    EXPECT_GT(count, 60);
}

TEST(Attacks, OtherAddressesOfTheMachineAreNotServed)
{
    const RunningServer server;
    asio::io_context context;
    asio::ip::tcp::socket socket(context);
    beast::error_code error;
    socket.connect({asio::ip::make_address("127.0.0.2"), server.Port()}, error);
    EXPECT_EQ(error, asio::error::connection_refused);
}

TEST(Attacks, EachAnswerHasANonceOfItsOwn)
{
    RunningServer server;
    std::string nonces[2];
    for (std::string& nonce : nonces) {
        RawClient client(server.Port());
        client.Send(Expand("GET / HTTP/1.1 | {host}", server));
        const std::string answer = client.ReadAll();
        const std::string start = "'nonce-";
        const std::size_t at = answer.find(start) + start.size();
        nonce = answer.substr(at, answer.find('\'', at) - at);
        EXPECT_EQ(nonce.size(), 32u);
        EXPECT_TRUE(answer.ends_with("content=\"" + nonce + "\">"));
    }
    EXPECT_NE(nonces[0], nonces[1]);
}

TEST(Attacks, WhoIsSlowOrOneTooManyIsCut)
{
    ServerSettings settings = TestServerSettings();
    settings.RequestTime = std::chrono::milliseconds(300);
    settings.ConnectionCount = 2;
    RunningServer server(settings);
    const std::string request = Expand("GET / HTTP/1.1 | {host}", server);
    RawClient silent(server.Port());
    RawClient slow(server.Port());
    slow.Send(request.substr(0, 10));
    RawClient third(server.Port());
    third.Send(request);
    EXPECT_EQ(third.ReadAll(), "");
    EXPECT_EQ(slow.ReadAll(), "");
    EXPECT_EQ(silent.ReadAll(), "");
    RawClient later(server.Port());
    later.Send(request);
    EXPECT_TRUE(later.ReadAll().starts_with("HTTP/1.1 200"));
}

TEST(Attacks, BadMessagesCloseTheSocket)
{
    ServerSettings settings = TestServerSettings();
    settings.TextBytes = 1000;
    settings.BinaryBytes = 2000;
    settings.PageCount = 1;
    const struct
    {
        std::string Bytes;
        bool IsBinary;
        unsigned Code;
    } cases[] = {
        {std::string(1001, ' '), false, 1009},
        {std::string(2001, ' '), false, 1009},
        {std::string(2001, '\0'), true, 1009},
        {std::string("\xe9\x03\0\0", 4) + std::string(1001, ' '), true, 1009},
        {"", true, 1008},
        {std::string("\0\0\0", 3), true, 1008},
        {std::string("\x05\0\0\0{}", 6), true, 1008},
        {std::string("\xff\xff\xff\xff{}", 6), true, 1008},
        {"\xff", false, 1007},
    };
    for (const auto& tried : cases) {
        RunningServer server(settings);
        PageClient page(server.Port(), server.Token());
        page.Stream().binary(tried.IsBinary);
        page.Stream().write(asio::buffer(tried.Bytes));
        // The close code is lost if the connection is closed before the rest of a message was read.
        const unsigned code = page.AwaitClose();
        EXPECT_TRUE(code == tried.Code || (code == 0 && tried.Bytes.size() > 2000)) << code;
    }
    RunningServer server(settings);
    PageClient page(server.Port(), server.Token());
    EXPECT_TRUE(page.Ask({{"do", "nonsense"}}).contains("error")); // so the connection was accepted
    PageClient second(server.Port(), server.Token());
    EXPECT_EQ(second.AwaitClose(), 1013u);
    EXPECT_TRUE(page.Ask({{"do", "state"}}).contains("state"));
    EXPECT_THROW(PageClient(server.Port(), std::string(64, '0')), boost::system::system_error);
}

TEST(Attacks, FramesThatLieCloseTheSocket)
{
    const std::string_view frames[] = {
        {"\x81\x02{}", 4},                                        // not masked
        {"\x81\xff\x7f\xff\xff\xff\xff\xff\xff\xff\0\0\0\0", 14}, // too large
        {"\xc1\x80\0\0\0\0", 6},                                  // compressed
        {"\x83\x80\0\0\0\0", 6},                                  // unknown opcode
        {"\x80\x80\0\0\0\0", 6},                                  // continuation without a start
        {"\x89\xfe\x01\0\0\0\0\0", 8},                            // oversized ping
    };
    RunningServer server;
    for (const std::string_view frame : frames) {
        RawClient client(server.Port());
        client.Send(
            Expand("GET /socket HTTP/1.1 | {host} | {origin} | {secret} | {upgrade}", server));
        EXPECT_TRUE(client.ReadHeader().starts_with("HTTP/1.1 101"));
        client.Send(frame);
        client.ReadAll();
    }
    PageClient page(server.Port(), server.Token());
    EXPECT_TRUE(page.Ask({{"do", "state"}}).contains("state"));
}

TEST(Attacks, APageThatDoesNotReadIsCut)
{
    constexpr int count = 60;
    ServerSettings settings = TestServerSettings();
    settings.UnreadBytes = 1U << 20U;
    RunningServer server(settings);
    PageClient page(server.Port(), server.Token());
    const auto isCutDuring = [](auto messages) {
        try {
            for (int i = 0; i < count; ++i)
                messages(i);
        } catch (const boost::system::system_error&) {
            return true;
        }
        return false;
    };
    bool isCut = isCutDuring([&](int i) { // each reply is a megabyte
        page.Send({{"id", i}, {"do", "picture"}, {"width", 512}, {"height", 512}});
    });
    PageClient other(server.Port(), server.Token()); // its reply follows all of these
    EXPECT_TRUE(other.Ask({{"do", "picture"}}).contains("picture"));
    isCut = isCut || isCutDuring([&](int) { page.Receive(); });
    EXPECT_TRUE(isCut);
}

TEST(Attacks, APageThatIsCutAmidItsMessagesEndsAlone)
{
    constexpr int roundCount = 10;
    constexpr int messageCount = 40;
    RunningServer server;
    PageClient other(server.Port(), server.Token());
    for (int round = 0; round < roundCount; ++round) {
        PageClient page(server.Port(), server.Token());
        for (int i = 0; i < messageCount; ++i)
            page.Send({{"id", i}, {"do", "catalogue"}});
        page.Stream().next_layer().set_option(asio::socket_base::linger(true, 0)); // without a
                                                                                   // close message
        page.Vanish();
        ASSERT_TRUE(other.Ask({{"do", "undo"}}).contains("changes"));
    }
}

TEST(Attacks, TexturesGoNowhereElseAndReplaceNothing)
{
    RunningServer server;
    server.Folder().Write("taken.png", "other");
    std::filesystem::create_symlink("/tmp/elsewhere.png", server.Folder().Path() / "link.png");
    PageClient page(server.Port(), server.Token());
    const auto put = [&](const std::string& name, const std::string& bytes) {
        page.Send({{"id", 1}, {"do", "addTexture"}, {"name", name}}, bytes);
        return page.Receive();
    };
    for (const char* name : {"../a.png", "/tmp/a.png", "a/b.png", "a\\b.png", ".png", ".a.png", "",
                             "a.xml", "a.png.sh", "a\n.png", "m.xml"})
        EXPECT_TRUE(put(name, "x").contains("error")) << name;
    EXPECT_TRUE(put("nothing.png", "").contains("error"));
    const std::ptrdiff_t count = server.Folder().Count();
    EXPECT_EQ(put("new.PNG", "bytes")["file"], "new.PNG");
    EXPECT_EQ(put("new.PNG", "bytes")["file"], "new.PNG");
    EXPECT_EQ(put("taken.png", "mine")["file"], "taken-2.png");
    EXPECT_EQ(put("link.png", "mine")["file"], "link-2.png");
    EXPECT_EQ(server.Folder().Read("taken.png"), "other");
    EXPECT_EQ(server.Folder().Read("taken-2.png"), "mine");
    EXPECT_EQ(server.Folder().Read("new.PNG"), "bytes");
    EXPECT_EQ(server.Folder().Count(), count + 3);
    const std::string longest = std::string(96, 'a') + ".png";
    EXPECT_EQ(put(longest, "bytes")["file"], longest);
    EXPECT_TRUE(put("a" + longest, "bytes").contains("error"));
}

} // namespace
