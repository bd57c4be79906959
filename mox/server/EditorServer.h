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

/// Limits of the server; tests use shorter times and smaller sizes.
struct ServerSettings
{
    std::uint16_t Port = 0; ///< 0 lets the system choose
    std::span<const Page> Pages = EmbeddedPages();

    std::chrono::milliseconds RequestTime = std::chrono::seconds(10); ///< for a request, and for a
                                                                      ///< WebSocket handshake
    std::chrono::milliseconds SilentTime =
        std::chrono::seconds(60); ///< after which a silent page counts as lost
    std::chrono::milliseconds AfterGoodbye = std::chrono::seconds(10);
    std::chrono::milliseconds WithoutPage = std::chrono::minutes(30);
    std::chrono::milliseconds FileLookTime = std::chrono::seconds(1);

    std::uint32_t HeaderBytes = 16U << 10U;
    std::size_t TextBytes = 8U << 20U;    ///< largest text message
    std::size_t BinaryBytes = 65U << 20U; ///< largest message with binary data
    std::size_t UnreadBytes = 64U << 20U; ///< limit of unsent data for a page when its next answer
                                          ///< is ready
    std::size_t JobCount = 64;            ///< unanswered jobs per page; further ones are refused
    std::size_t PageCount = 4;
    std::size_t ConnectionCount = 32;
};

/// Why a server stopped.
enum class ServerEnd
{
    Goodbye, ///< the last page closed on purpose
    NoPage,  ///< no page was connected for too long
    Stopped, ///< stop was requested
};

/// Serves a session to browsers on this machine, as docs/editor-protocol.md describes. Whatever a
/// client sends, the server writes only the session's document, its journal, and new textures next
/// to it.
class EditorServer
{
public:
    /// Starts listening; Run then serves the connections.
    /// @param session must outlive the object
    /// @throws HostError if the port is in use
    explicit EditorServer(EditorSession& session, const ServerSettings& settings = {});
    ~EditorServer();

    std::uint16_t Port() const;

    /// The address to open in a browser. It contains the token, so it must not be logged.
    std::string Address() const;

    /// Serves until the server is to stop. May be called only once; until it returns, no other
    /// thread may use the session.
    /// @param stop stops the server; may be requested from any thread
    ServerEnd Run(const std::stop_token& stop);

private:
    class Listener;
    std::unique_ptr<Listener> _listener;
};

} // namespace Mox::Host
