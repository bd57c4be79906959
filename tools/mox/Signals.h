#pragma once

#include <atomic>
#include <stop_token>

namespace Mox::Tool {

/// From now on the signals with which people and build systems end a program (SIGINT, SIGTERM,
/// SIGHUP, unless they are ignored) make it remove what it would leave behind before it ends. To be
/// called once.
void CleanUpOnSignals();

/// Removes what the program would leave behind and ends it as the signal would have.
[[noreturn]] void EndBySignal(int signal);

/// While an object of this class exists, the first signal requests a stop and does not end the
/// program. There is at most one object at a time.
class StopOnSignal
{
public:
    StopOnSignal();
    ~StopOnSignal();

    StopOnSignal(const StopOnSignal&) = delete;
    StopOnSignal& operator=(const StopOnSignal&) = delete;

    std::stop_token Token() const { return _source.get_token(); }

    /// The signal that arrived, or 0.
    int Signal() const { return _signal; }

    /// Requests the stop.
    /// @returns false if that was done before
    bool Take(int signal);

private:
    std::stop_source _source;
    std::atomic<int> _signal = 0;
};

} // namespace Mox::Tool
