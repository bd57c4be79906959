#pragma once

#include "mox/program/ProgramFormat.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Mox::Host {

/// Caches the results for programs, so that they are computed only once for programs that differ
/// only in their header. It keeps the most recent 32 MB. Thread-safe.
class MadePrograms
{
public:
    using Files = std::vector<ProgramFile>;

    /// @param make creates the output files of the program; returns none if that is impossible.
    ///        While one thread runs it, other threads with the same request wait. May throw
    /// @returns the files of an equal program with the header of this one, or the result of make
    Files Get(const CgProgram& program, const std::function<Files()>& make);

private:
    /// Files without the line that contains their header.
    struct Headless
    {
        Headless(Files files, const std::string& header);
        Files With(const std::string& header) const;

        Files Parts;
        std::vector<std::size_t> HeaderAt; ///< its position in each file, or npos
    };
    using Made = std::shared_future<std::shared_ptr<const Headless>>; ///< null without a result

    void Keep(const std::string& key, std::size_t size);
    void Forget(const std::string& key);

    std::mutex _mutex;
    std::map<std::string, Made> _made;                     ///< keyed by the content of the program
    std::deque<std::pair<std::string, std::size_t>> _kept; ///< keys and bytes, oldest first
    std::size_t _size = 0;                                 ///< total size in bytes
};

} // namespace Mox::Host
