#pragma once

#include "mox/program/CgProgram.h"

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

/// Keeps what was made of programs, so that it is made once for all programs that are equal but for
/// their header. It keeps the last 32 MB. Safe in parallel.
class MadePrograms
{
public:
    using Texts = std::vector<std::string>;

    /// @param make makes the texts of the program; none if it cannot. While a thread makes them,
    ///        others that want the same wait. May throw
    /// @returns the texts of an equal program with the header of this one, or what make returns
    Texts Get(const CgProgram& program, const std::function<Texts()>& make);

private:
    /// Texts without the line that holds their header.
    struct Headless
    {
        Headless(Texts texts, const std::string& header);
        Texts With(const std::string& header) const;

        Texts Parts;
        std::vector<std::size_t> HeaderAt; ///< by part; npos if it has none
    };
    using Made = std::shared_future<std::shared_ptr<const Headless>>; ///< null if there is none

    void Keep(const std::string& key, std::size_t size);
    void Forget(const std::string& key);

    std::mutex _mutex;
    std::map<std::string, Made> _made;                     ///< by content of the program
    std::deque<std::pair<std::string, std::size_t>> _kept; ///< keys and bytes, the oldest first
    std::size_t _size = 0;                                 ///< bytes of all that is kept
};

} // namespace Mox::Host
