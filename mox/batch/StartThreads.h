#pragma once

#include <functional>
#include <stop_token>
#include <thread>
#include <vector>

namespace Mox::Host {

/// Starts threads that all do the same work, as many as wanted or as the machine gives; work has to
/// share itself out among however many there are. Libraries that need it are ready for threads
/// then.
/// @param work must not throw
/// @throws HostError if the machine gives no thread at all
std::vector<std::jthread> StartThreads(std::size_t wanted,
                                       const std::function<void(const std::stop_token&)>& work);

} // namespace Mox::Host
