#pragma once

#include <ctime>

namespace Mox::Bench {

/// Measures processor time of this thread, which other programs on the machine affect less than
/// wall-clock time.
class Stopwatch
{
public:
    /// Returns the seconds since construction or the last call.
    double Lap()
    {
        const double now = Now();
        const double lap = now - _last;
        _last = now;
        return lap;
    }

private:
    static double Now()
    {
        timespec time;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }

    double _last = Now();
};

} // namespace Mox::Bench
