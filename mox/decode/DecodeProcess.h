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

/// One run of the decoding program, and its response. A decoder that crashes, exceeds the time
/// limit or writes invalid data does not affect this process.
class DecodeProcess : private boost::noncopyable
{
public:
    /// Starts the program.
    /// @param what first argument of the program: the content of the file
    /// @param folder in which the file may refer to other files; not open if it must not refer to
    ///        any
    /// @throws DecodeError naming the program if it cannot be run
    DecodeProcess(const std::filesystem::path& program, const std::string& what, OpenFile file,
                  OpenFile folder, const DecodeLimits& limits);

    /// Kills the program.
    ~DecodeProcess();

    /// Fills the buffer with the next bytes of the response.
    /// @throws DecodeError if the response is too short, or on timeout
    void Read(std::span<std::byte> bytes);

    /// @throws DecodeError if there is more data in the response
    void RequireEnd();

private:
    /// @returns 0 at the end of the response
    std::size_t ReadSome(std::span<std::byte> bytes);

    /// @returns the status from waitpid; 0 if the process was already reaped elsewhere
    int End();

    std::chrono::steady_clock::time_point _deadline;
    std::uint32_t _seconds;
    OpenFile _answer;
    std::atomic<pid_t> _process = 0; ///< 0 after it has ended
    const EndCleanup _cleanup;       ///< kills it when this process ends
};

} // namespace Mox::Host
