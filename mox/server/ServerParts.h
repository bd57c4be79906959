#pragma once

#include "mox/server/EditorHub.h"
#include "mox/server/EditorServer.h"
#include "mox/server/Lifetime.h"
#include "mox/server/RequestDoor.h"

#include <boost/noncopyable.hpp>

#include <cstddef>
#include <memory>

namespace Mox::Host {

/// State shared by the connections of a server.
struct ServerParts
{
    const ServerSettings& Settings;
    const RequestDoor& Door;
    EditorHub& Hub;
    Lifetime& Life;
};

/// One of a limited number of connection slots, released by the destructor.
class TakenSeat : private boost::noncopyable
{
public:
    /// @param count number of slots in use; must outlive the object
    explicit TakenSeat(std::size_t& count) : _count(count) { ++_count; }
    ~TakenSeat() { --_count; }

private:
    std::size_t& _count;
};

using Seat = std::unique_ptr<TakenSeat>;

} // namespace Mox::Host
