#pragma once

#include <functional>
#include <list>
#include <mutex>

namespace Mox::Host {

/// Removes something that must not outlive the process, such as a temporary file, if the process is
/// told to end in the middle of its work. Objects belong to the whole process and any thread.
class EndCleanup
{
public:
    /// Registers an action, which runs in CleanUpForEnd while this object exists. Actions that were
    /// registered later run first.
    /// @param action must not throw
    explicit EndCleanup(std::function<void()> action);

    /// Forgets the action without running it.
    ~EndCleanup();

    EndCleanup(const EndCleanup&) = delete;
    EndCleanup& operator=(const EndCleanup&) = delete;

private:
    std::list<std::function<void()>>::iterator _entry;
};

/// Keeps CleanUpForEnd waiting as long as the lock is held, which should be short: for steps that
/// belong together, such as making a temporary file and registering its removal.
[[nodiscard]] std::unique_lock<std::recursive_mutex> DelayEnd();

/// Runs the actions of all objects. Every other thread that begins or ends the life of an
/// EndCleanup or calls DelayEnd afterwards waits for good, so the caller has to end the process.
void CleanUpForEnd();

} // namespace Mox::Host
