#include "mox/batch/OrderedOutcomes.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Mox::Host {

namespace {

constexpr std::size_t window = 256;
constexpr std::size_t mostWriting = 16;

/// The thread that reports looks by itself now and then: woken for each small job, it would take a
/// processor from the workers all the time.
constexpr std::chrono::milliseconds patience{10};

} // namespace

OrderedOutcomes::OrderedOutcomes(std::size_t count)
    : _count(count), _slots(std::clamp<std::size_t>(count, 1, window))
{}

std::optional<std::size_t> OrderedOutcomes::Take()
{
    std::unique_lock lock(_mutex);
    _advanced.wait(lock, [this] { return _isStopped || _taken == _count || !IsWindowFull(); });
    if (_isStopped || _taken == _count) {
        _arrived.notify_one();
        return {};
    }
    SlotOf(_taken).State = Stage::Working;
    return _taken++;
}

bool OrderedOutcomes::BeginWriting(std::size_t job)
{
    std::unique_lock lock(_mutex);
    _written.wait(lock, [this] { return _isStopped || _writing < mostWriting; });
    if (_isStopped)
        return false;
    ++_writing;
    SlotOf(job).State = Stage::Writing;
    return true;
}

void OrderedOutcomes::Put(std::size_t job, WorkerOutcome outcome)
{
    const std::lock_guard lock(_mutex);
    --_writing;
    ++_waiting;
    SlotOf(job).Outcome = std::move(outcome);
    SlotOf(job).State = Stage::Done;
    _written.notify_one();
    if (_isStopped || _waiting > window / 2)
        _arrived.notify_one();
}

std::optional<WorkerOutcome> OrderedOutcomes::Next(std::size_t& job)
{
    std::unique_lock lock(_mutex);
    for (;;) {
        while (_isStopped && _next < _taken && SlotOf(_next).State == Stage::Working)
            ++_next;
        if (_next == _taken && (_isStopped || _taken == _count))
            return {};
        if (_next < _taken && SlotOf(_next).State == Stage::Done)
            break;
        _arrived.wait_for(lock, patience);
    }
    if (IsWindowFull())
        _advanced.notify_all();
    job = _next++;
    --_waiting;
    return std::exchange(SlotOf(job).Outcome, {});
}

void OrderedOutcomes::Stop()
{
    const std::lock_guard lock(_mutex);
    _isStopped = true;
    _arrived.notify_one();
    _advanced.notify_all();
    _written.notify_all();
}

} // namespace Mox::Host
