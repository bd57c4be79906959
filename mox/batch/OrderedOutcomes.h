#pragma once

#include "mox/batch/ExportBatch.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <vector>

namespace Mox::Host {

/// What a worker has to say of a job.
struct WorkerOutcome
{
    ExportOutcome Outcome;
    std::exception_ptr Failure; ///< what stopped the job, not yet among the problems
};

/// Distributes jobs over workers and puts their outcomes back into order. A slow job lets the
/// others run ahead no further than a window, which bounds what is kept. Memory is allocated by the
/// constructor alone.
class OrderedOutcomes
{
public:
    /// @param count number of jobs
    explicit OrderedOutcomes(std::size_t count);

    /// The next job for a worker; nothing when the worker is to end.
    std::optional<std::size_t> Take();

    /// Waits for the turn of a job to write its files. Only a few may do so at a time, since each
    /// keeps all of its files open.
    /// @returns false if the job is to be given up, after a stop
    bool BeginWriting(std::size_t job);

    /// Takes the outcome of a job that has begun to write.
    void Put(std::size_t job, WorkerOutcome outcome);

    /// Waits for the outcome of the next job in order, leaving out those that a stop has cut off.
    /// @param job receives its number
    /// @returns nothing after the last one
    std::optional<WorkerOutcome> Next(std::size_t& job);

    /// Lets no further job begin, and no further job write.
    void Stop();

private:
    enum class Stage
    {
        Working,
        Writing,
        Done,
    };

    struct Slot
    {
        Stage State = Stage::Working;
        WorkerOutcome Outcome;
    };

    Slot& SlotOf(std::size_t job) { return _slots[job % _slots.size()]; }
    bool IsWindowFull() const { return _taken == _next + _slots.size(); }

    const std::size_t _count;
    std::vector<Slot> _slots; ///< of the jobs from _next to _taken
    std::mutex _mutex;
    std::condition_variable _arrived;  ///< an outcome, or a stop
    std::condition_variable _advanced; ///< the window, which was full, or a stop
    std::condition_variable _written;  ///< a job
    std::size_t _next = 0;             ///< job to report
    std::size_t _taken = 0;
    std::size_t _writing = 0;
    bool _isStopped = false;
};

} // namespace Mox::Host
