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
    std::chrono::milliseconds SilentTime =
        std::chrono::seconds(60); ///< after which a page counts as lost
    std::chrono::milliseconds AfterGoodbye = std::chrono::seconds(10);
    std::chrono::milliseconds WithoutPage = std::chrono::minutes(30);
    std::chrono::milliseconds FileLookTime = std::chrono::seconds(1);

    std::uint32_t HeaderBytes = 16U << 10U;
    std::size_t TextBytes = 8U << 20U;    ///< of a message
    std::size_t BinaryBytes = 65U << 20U; ///< of a message with its bytes
    std::size_t UnreadBytes = 64U << 20U; ///< unsent to a page when its next answer is ready
    std::size_t JobCount = 64; ///< of one page that have no answer yet; others are refused
    std::size_t PageCount = 4;
    std::size_t ConnectionCount = 32;
};

/// Why a server ended.
enum class ServerEnd
{
    Goodbye, ///< the last page said goodbye
    NoPage,  ///< there was none for too long
    Stopped, ///< the stop token was used
};

/// Serves a session to pages in browsers on this machine, as docs/editor-protocol.md describes.
/// Whatever arrives, it writes only the session's document, its journal and new textures beside it.
class EditorServer
{
public:
    /// Starts to listen; Run serves the connections.
    /// @param session must outlive the object
    /// @throws HostError if the port is taken
    explicit EditorServer(EditorSession& session, const ServerSettings& settings = {});
    ~EditorServer();

    std::uint16_t Port() const;

    /// The address to open in a browser. It contains the token, so it must not be logged.
    std::string Address() const;

    /// Serves until it is time to end. Call it once; until it returns, no other thread may use the
    /// session.
    /// @param stop ends it; may be requested from any thread
    ServerEnd Run(const std::stop_token& stop);

private:
    class Listener;
    std::unique_ptr<Listener> _listener;
};

} // namespace Mox::Host
