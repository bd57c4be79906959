#pragma once

#include "mox/batch/ExportBatch.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <vector>

namespace Mox::Host {

/// A worker's result for one job.
struct WorkerOutcome
{
    ExportOutcome Outcome;
    std::exception_ptr Failure; ///< exception that stopped the job; not yet among the problems
};

/// Distributes jobs among workers and restores the order of their outcomes. While a slow job runs,
/// the others can advance only as far as a fixed window allows, which bounds memory use. Only the
/// constructor allocates memory.
class OrderedOutcomes
{
public:
    /// @param count number of jobs
    explicit OrderedOutcomes(std::size_t count);

    /// Returns the next job for a worker, or nothing when the worker is to end.
    std::optional<std::size_t> Take();

    /// Waits until a job may write its files. Only a few jobs may write at a time, since each keeps
    /// all of its files open.
    /// @returns false if the job is to be abandoned because of a stop
    bool BeginWriting(std::size_t job);

    /// Stores the outcome of a job that has begun to write.
    void Put(std::size_t job, WorkerOutcome outcome);

    /// Waits for the outcome of the next job in order, skipping jobs that were abandoned after a
    /// stop.
    /// @param job receives its number
    /// @returns nothing after the last job
    std::optional<WorkerOutcome> Next(std::size_t& job);

    /// Prevents any further job from starting or from beginning to write.
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
    std::vector<Slot> _slots; ///< jobs from _next up to _taken
    std::mutex _mutex;
    std::condition_variable _arrived;  ///< signals an outcome or a stop
    std::condition_variable _advanced; ///< signals room in a full window or a stop
    std::condition_variable _written;  ///< signals that a job has finished writing
    std::size_t _next = 0;             ///< next job to report
    std::size_t _taken = 0;
    std::size_t _writing = 0;
    bool _isStopped = false;
};

} // namespace Mox::Host
