#include "mox/batch/OrderedOutcomes.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

namespace {

constexpr std::size_t window = 256;
constexpr std::size_t mostWriting = 16;

} // namespace

OrderedOutcomes::OrderedOutcomes(std::size_t count)
    : _count(count), _slots(std::clamp<std::size_t>(count, 1, window))
{}

std::optional<std::size_t> OrderedOutcomes::Take()
{
    std::unique_lock lock(_mutex);
    _advanced.wait(lock, [this] { return _isStopped || _taken == _count || !IsWindowFull(); });
    if (_isStopped || _taken == _count)
        return {};
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
    SlotOf(job).Outcome = std::move(outcome);
    SlotOf(job).State = Stage::Done;
    _written.notify_one();
    _arrived.notify_one();
}

std::optional<WorkerOutcome> OrderedOutcomes::Next(std::size_t& job)
{
    std::unique_lock lock(_mutex);
    const auto isOver = [this] { return _next == _taken && (_isStopped || _taken == _count); };
    _arrived.wait(lock, [&] {
        while (_isStopped && _next < _taken && SlotOf(_next).State == Stage::Working)
            ++_next;
        return isOver() || (_next < _taken && SlotOf(_next).State == Stage::Done);
    });
    if (isOver())
        return {};
    if (IsWindowFull())
        _advanced.notify_all();
    job = _next++;
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
