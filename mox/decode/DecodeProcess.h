#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/decode/OpenFile.h"
#include "mox/host/EndCleanup.h"

#include <boost/noncopyable.hpp>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <sys/types.h>

namespace Mox::Host {

/// One run of the decoding program, and its answer. A decoder that crashes, takes too long or
/// writes nonsense ends there and not in this process.
class DecodeProcess : private boost::noncopyable
{
public:
    /// Starts the program.
    /// @param what first argument of the program: what the file holds
    /// @param folder in which the file may name further ones; not open if it may name none
    /// @throws DecodeError naming the program if it cannot run
    DecodeProcess(const std::filesystem::path& program, const std::string& what, OpenFile file,
                  OpenFile folder, const DecodeLimits& limits);

    /// Ends the program.
    ~DecodeProcess();

    /// Fills all of the bytes with the next ones of the answer.
    /// @throws DecodeError if the answer ends before, or the time is up
    void Read(std::span<std::byte> bytes);

    /// @throws DecodeError if the answer goes on
    void RequireEnd();

private:
    /// @returns 0 at the end of the answer
    std::size_t ReadSome(std::span<std::byte> bytes);

    /// @returns the status that waitpid gave; 0 if somebody else has taken it
    int End();

    std::chrono::steady_clock::time_point _deadline;
    std::uint32_t _seconds;
    OpenFile _answer;
    std::atomic<pid_t> _process = 0; ///< 0 if it has ended
    const EndCleanup _cleanup;       ///< ends it with this process
};

} // namespace Mox::Host
