#include "mox/batch/StartThreads.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <libxml/parser.h>

#include <system_error>

namespace Mox::Host {

std::vector<std::jthread> StartThreads(std::size_t wanted,
                                       const std::function<void(const std::stop_token&)>& work)
{
    xmlInitParser(); // only the first call is not safe on several threads
    std::vector<std::jthread> threads;
    try {
        while (threads.size() < wanted)
            threads.emplace_back(work);
    } catch (const std::system_error& error) {
        if (threads.empty())
            throw HostError({}, Materials::Compose("cannot start a thread: ", error.what()));
    }
    return threads;
}

} // namespace Mox::Host
