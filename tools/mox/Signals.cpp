#include "Signals.h"

#include "Commands.h"
#include "mox/host/EndCleanup.h"

#include <csignal>
#include <cstdlib>
#include <mutex>
#include <semaphore.h>
#include <system_error>
#include <thread>

namespace Mox::Tool {

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

sem_t arrival;
std::atomic<int> arrived = 0; // the latest signal
std::mutex receiverMutex;
StopOnSignal* receiver = nullptr;

/// The signal handler. It must only call async-signal-safe functions, so a thread does the work.
void Note(int signal)
{
    arrived = signal;
    sem_post(&arrival);
}

void HandleSignals()
{
    for (;;) {
        while (sem_wait(&arrival) != 0) {
        }
        const int signal = arrived;
        {
            const std::lock_guard lock(receiverMutex);
            if (receiver && receiver->Take(signal))
                continue;
        }
        EndBySignal(signal);
    }
}

} // namespace

void CleanUpOnSignals()
{
    sem_init(&arrival, 0, 0);
    try {
        std::thread(HandleSignals).detach();
    } catch (const std::system_error&) {
        return; // without a thread, signals keep their default effect
    }
    for (const int signal : endingSignals) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) // set by nohup, for example
            continue;
        action.sa_handler = Note;
        action.sa_flags = SA_RESTART;
        sigaction(signal, &action, nullptr);
    }
}

void EndBySignal(int signal)
{
    Host::CleanUpForEnd();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(signalStatus + signal); // if the signal is blocked
}

StopOnSignal::StopOnSignal()
{
    const std::lock_guard lock(receiverMutex);
    receiver = this;
}

StopOnSignal::~StopOnSignal()
{
    const std::lock_guard lock(receiverMutex);
    receiver = nullptr;
}

bool StopOnSignal::Take(int signal)
{
    _signal = signal;
    return _source.request_stop();
}

} // namespace Mox::Tool
