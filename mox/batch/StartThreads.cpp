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

/// Lets libxml2 make what it keeps for each thread, now that this is known to succeed: where it
/// lacks the memory for that, it reports an error, for which it needs the same thing, and so on
/// until the stack is full. What a thread frees is there for its next allocation of that size.
/// @returns whether there is memory for it
bool PrepareThread()
{
    void* probe = std::malloc(sizeof(xmlGlobalState));
    if (!probe)
        return false;
    *static_cast<volatile char*>(probe) = 0; // or a compiler leaves the allocation out
    std::free(probe);
    return xmlGetGlobalState() != nullptr;
}

} // namespace

std::vector<std::jthread> StartThreads(std::size_t wanted, const std::function<void()>& work)
{
    xmlInitParser(); // only the first call is not safe on several threads
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
    } catch (const std::exception& error) { // the system's, or a lack of memory
        if (threads.empty())
            throw HostError({}, Materials::Compose("cannot start a thread: ", error.what()));
    }
    return threads;
}

} // namespace Mox::Host
