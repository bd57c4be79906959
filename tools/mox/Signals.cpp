#include "StopOnSignal.h"

namespace Mox::Tool {

StopOnSignal::StopOnSignal()
{
    sigemptyset(&_signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current = {};
        sigaction(signal, nullptr, &current);
        if (current.sa_handler != SIG_IGN) // nohup and the like
            sigaddset(&_signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &_signals, &_oldMask);
    _watcher = std::jthread([this](const std::stop_token& end) {
        constexpr timespec patience{0, 50'000'000};
        while (!end.stop_requested()) {
            const int signal = sigtimedwait(&_signals, nullptr, &patience);
            if (signal > 0) {
                _signal = signal;
                _source.request_stop();
                return;
            }
        }
    });
}

StopOnSignal::~StopOnSignal()
{
    _watcher.request_stop();
    _watcher.join();
    pthread_sigmask(SIG_SETMASK, &_oldMask, nullptr);
}

} // namespace Mox::Tool
