#include "mox/host/EndCleanup.h"

#include <utility>

namespace Mox::Host {

namespace {

struct Registry
{
    std::recursive_mutex Mutex;
    std::list<std::function<void()>> Actions; ///< in reverse order of registration
};

/// Never destroyed, because threads may still register actions while static objects are destroyed.
Registry& TheRegistry()
{
    static Registry& registry = *new Registry;
    return registry;
}

} // namespace

EndCleanup::EndCleanup(std::function<void()> action)
{
    const auto lock = DelayEnd();
    TheRegistry().Actions.push_front(std::move(action));
    _entry = TheRegistry().Actions.begin();
}

EndCleanup::~EndCleanup()
{
    const auto lock = DelayEnd();
    TheRegistry().Actions.erase(_entry);
}

std::unique_lock<std::recursive_mutex> DelayEnd()
{
    return std::unique_lock(TheRegistry().Mutex);
}

void CleanUpForEnd()
{
    TheRegistry().Mutex.lock(); // never unlocked
    for (const std::function<void()>& action : TheRegistry().Actions)
        action();
}

} // namespace Mox::Host
