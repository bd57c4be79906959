#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace Mox::Host {

/// What has been done so far, to be taken back in reverse order unless all of it succeeds.
class Rollback
{
public:
    Rollback() = default;
    Rollback(const Rollback&) = delete;
    Rollback& operator=(const Rollback&) = delete;

    /// Takes back everything that was not committed.
    ~Rollback()
    {
        while (!_actions.empty()) {
            _actions.back()();
            _actions.pop_back();
        }
    }

    /// Remembers how to take back what has just been done. Where even that fails, it is taken back
    /// at once. The action must not fail.
    template <class Action>
    void Add(Action action)
    {
        try {
            _actions.emplace_back(action);
        } catch (...) {
            action();
            throw;
        }
    }

    void Commit() noexcept { _actions.clear(); }

private:
    std::vector<std::function<void()>> _actions;
};

} // namespace Mox::Host
