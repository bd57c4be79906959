#pragma once

#include "mox/host/EndCleanup.h"

#include <filesystem>
#include <optional>
#include <string>

namespace Mox::Tool {

/// A browser that was asked to open an address. The address holds a secret, and other users see the
/// arguments of programs, so the browser is given a file that leads there and that nobody else can
/// read. The file goes away with the object.
class Browser
{
public:
    Browser() = default;
    ~Browser();

    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    /// Does nothing where there is no screen.
    /// @returns whether a browser was asked; it may still not have appeared
    bool Open(const std::string& address);

private:
    void RemoveFolder() noexcept;

    std::filesystem::path _folder; ///< empty if there is none
    std::optional<Host::EndCleanup> _cleanup;
};

} // namespace Mox::Tool
