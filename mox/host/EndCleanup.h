#pragma once

#include <functional>
#include <list>
#include <mutex>

namespace Mox::Host {

/// Removes a resource that must not outlive the process, such as a temporary file, if the process
/// is asked to terminate during its work. The registered actions are shared by all threads of the
/// process.
class EndCleanup
{
public:
    /// Registers an action that CleanUpForEnd runs if this object still exists. The actions run in
    /// reverse order of registration.
    /// @param action must not throw
    explicit EndCleanup(std::function<void()> action);

    /// Unregisters the action without running it.
    ~EndCleanup();

    EndCleanup(const EndCleanup&) = delete;
    EndCleanup& operator=(const EndCleanup&) = delete;

private:
    std::list<std::function<void()>>::iterator _entry;
};

/// Delays CleanUpForEnd while the lock is held, which should be brief. Use it for steps that must
/// not be separated, such as creating a temporary file and registering its removal.
[[nodiscard]] std::unique_lock<std::recursive_mutex> DelayEnd();

/// Runs the actions of all objects. Afterwards, any other thread that creates or destroys an
/// EndCleanup or calls DelayEnd blocks forever, so the caller must end the process.
void CleanUpForEnd();

} // namespace Mox::Host
