#pragma once

#include <atomic>
#include <stop_token>

namespace Mox::Tool {

/// Makes the program clean up before it is ended by the signals that users and build systems send
/// (SIGINT, SIGTERM and SIGHUP, unless ignored). Must be called only once.
void CleanUpOnSignals();

/// Cleans up and ends the program as the signal would have.
[[noreturn]] void EndBySignal(int signal);

/// While an object of this class exists, the first signal requests a stop instead of ending the
/// program. Only one object may exist at a time.
class StopOnSignal
{
public:
    StopOnSignal();
    ~StopOnSignal();

    StopOnSignal(const StopOnSignal&) = delete;
    StopOnSignal& operator=(const StopOnSignal&) = delete;

    std::stop_token Token() const { return _source.get_token(); }

    /// The signal that was received, or 0.
    int Signal() const { return _signal; }

    /// Requests the stop.
    /// @returns false if it was already requested
    bool Take(int signal);

private:
    std::stop_source _source;
    std::atomic<int> _signal = 0;
};

} // namespace Mox::Tool
