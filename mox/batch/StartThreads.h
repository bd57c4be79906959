#pragma once

#include <functional>
#include <thread>
#include <vector>

namespace Mox::Host {

/// Starts threads that all do the same work, as many as wanted or as the machine has room for; the
/// work has to distribute itself over however many there are. Libraries that need it are ready for
/// threads then.
/// @param work must not throw; a thread without the memory that it needs of its own ends without it
/// @throws HostError if not a single thread can be started
std::vector<std::jthread> StartThreads(std::size_t wanted, const std::function<void()>& work);

} // namespace Mox::Host
