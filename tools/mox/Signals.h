#pragma once

#include <atomic>
#include <csignal>
#include <stop_token>
#include <thread>

namespace Mox::Tool {

/// Turns the signals by which people and build systems end a program into a stop request, as long
/// as it lives. It must come before the threads of the work, which inherit its signal mask.
class StopOnSignal
{
public:
    StopOnSignal();
    ~StopOnSignal();

    StopOnSignal(const StopOnSignal&) = delete;
    StopOnSignal& operator=(const StopOnSignal&) = delete;

    std::stop_token Token() const { return _source.get_token(); }

    /// The signal that came, or 0.
    int Signal() const { return _signal; }

private:
    sigset_t _signals;
    sigset_t _oldMask;
    std::stop_source _source;
    std::atomic<int> _signal = 0;
    std::jthread _watcher;
};

} // namespace Mox::Tool
