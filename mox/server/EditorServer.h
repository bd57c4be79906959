#pragma once

#include "mox/editor/EditorSession.h"
#include "mox/server/Page.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>
#include <string>

namespace Mox::Host {

/// Tests choose shorter times and smaller limits.
struct ServerSettings
{
    std::uint16_t Port = 0; ///< 0 lets the system choose one
    std::span<const Page> Pages = EmbeddedPages();

    std::chrono::milliseconds RequestTime = std::chrono::seconds(10); ///< also of a handshake
    std::chrono::milliseconds SilentTime = std::chrono::seconds(60);  ///< until a page is lost
    std::chrono::milliseconds AfterGoodbye = std::chrono::seconds(10);
    std::chrono::milliseconds WithoutPage = std::chrono::minutes(30);
    std::chrono::milliseconds FileLookTime = std::chrono::seconds(1);

    std::uint32_t HeaderBytes = 16U << 10U;
    std::size_t TextBytes = 8U << 20U;    ///< of a message
    std::size_t BinaryBytes = 65U << 20U; ///< of a message with what goes along
    std::size_t UnreadBytes = 64U << 20U; ///< that may wait when another answer comes
    std::size_t JobCount = 64;            ///< of one page, without an answer yet
    std::size_t PageCount = 4;
    std::size_t ConnectionCount = 32;
};

/// Why a server has ended.
enum class ServerEnd
{
    Goodbye, ///< the last page said goodbye
    NoPage,  ///< none has come for long
    Stopped,
};

/// Serves a session to pages in browsers on this machine, as docs/editor-protocol.md describes.
/// Whatever comes from the network, nothing but the session's document and its textures is written.
class EditorServer
{
public:
    /// Listens from now on; connections are served by Run.
    /// @param session must outlive the object
    /// @throws HostError if the port is taken
    explicit EditorServer(EditorSession& session, const ServerSettings& settings = {});
    ~EditorServer();

    std::uint16_t Port() const;

    /// What a person opens in a browser. It holds the token, so it belongs into no log.
    std::string Address() const;

    /// Serves until it is time to end. To be called once; the session belongs to this thread
    /// meanwhile.
    /// @param stop may be requested from any thread
    ServerEnd Run(const std::stop_token& stop);

private:
    class Listener;
    std::unique_ptr<Listener> _listener;
};

} // namespace Mox::Host
