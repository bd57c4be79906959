#pragma once

#include "mox/host/EndCleanup.h"

#include <filesystem>
#include <optional>
#include <string>

namespace Mox::Tool {

/// Opens an address in the user's browser. The address contains a secret, and other users can see
/// the arguments of programs. The browser therefore opens a file that redirects to the address and
/// that only this user can read. The destructor removes the file.
class Browser
{
public:
    Browser() = default;
    ~Browser();

    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    /// Does nothing if there is no display.
    /// @returns whether the desktop's program was started; the browser may still fail to open
    bool Open(const std::string& address);

private:
    void RemoveFolder() noexcept;

    std::filesystem::path _folder; ///< empty if there is none
    std::optional<Host::EndCleanup> _cleanup;
};

} // namespace Mox::Tool
