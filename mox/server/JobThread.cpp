#include "mox/server/JobThread.h"

#include <utility>

namespace Mox::Host {

JobThread::JobThread() : _thread([this](const std::stop_token& stop) { Work(stop); })
{}

void JobThread::Add(std::function<void()> job)
{
    {
        const std::lock_guard lock(_mutex);
        _jobs.push(std::move(job));
    }
    _arrival.notify_one();
}

void JobThread::Work(const std::stop_token& stop)
{
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock lock(_mutex);
            if (!_arrival.wait(lock, stop, [this] { return !_jobs.empty(); }) ||
                stop.stop_requested())
                return;
            job = std::move(_jobs.front());
            _jobs.pop();
        }
        job();
    }
}

} // namespace Mox::Host
