#pragma once

#include <functional>
#include <thread>
#include <vector>

namespace Mox::Host {

/// Starts threads that all run the same function, as many as requested or as the system can start;
/// the function must distribute the work among however many there are. Libraries that require it
/// are initialised for use by several threads.
/// @param work must not throw; a thread that lacks memory for its thread-local data ends without
///        calling it
/// @throws HostError if not a single thread can be started
std::vector<std::jthread> StartThreads(std::size_t wanted, const std::function<void()>& work);

} // namespace Mox::Host
