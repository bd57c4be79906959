#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <queue>
#include <stop_token>
#include <thread>

namespace Mox::Host {

/// A thread that runs jobs one at a time, in the order in which they were added.
class JobThread
{
public:
    JobThread();

    /// Waits for the running job and drops the rest.
    ~JobThread() = default;

    /// @param job must not throw
    void Add(std::function<void()> job);

private:
    void Work(const std::stop_token& stop);

    std::mutex _mutex;
    std::condition_variable_any _arrival;
    std::queue<std::function<void()>> _jobs;
    std::jthread _thread;
};

} // namespace Mox::Host
