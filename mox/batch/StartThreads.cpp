#include "mox/batch/StartThreads.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/threads.h>

#include <cstdlib>
#include <exception>
#include <future>
#include <new>
#include <utility>

namespace Mox::Host {

namespace {

/// Makes libxml2 create its thread-local data while that is known to succeed. If memory runs out
/// there, libxml2 reports an error, which requires the same data, and recurses until the stack
/// overflows. The probe's memory is freed and therefore available for the next allocation of that
/// size.
/// @returns whether there is enough memory
bool PrepareThread()
{
    void* probe = std::malloc(sizeof(xmlGlobalState));
    if (!probe)
        return false;
    *static_cast<volatile char*>(probe) = 0; // keeps the compiler from removing the allocation
    std::free(probe);
    return xmlGetGlobalState() != nullptr;
}

} // namespace

std::vector<std::jthread> StartThreads(std::size_t wanted, const std::function<void()>& work)
{
    xmlInitParser(); // only the first call is not thread-safe
    std::vector<std::jthread> threads;
    try {
        threads.reserve(wanted);
        while (threads.size() < wanted) {
            std::promise<bool> prepared;
            std::future<bool> isPrepared = prepared.get_future();
            std::jthread thread([work, prepared = std::move(prepared)]() mutable {
                const bool isReady = PrepareThread();
                prepared.set_value(isReady);
                if (isReady)
                    work();
            });
            if (!isPrepared.get())
                throw std::bad_alloc();
            threads.push_back(std::move(thread));
        }
    } catch (const std::exception& error) { // an error from the system, or out of memory
        if (threads.empty())
            throw HostError({}, Materials::Compose("cannot start a thread: ", error.what()));
    }
    return threads;
}

} // namespace Mox::Host
