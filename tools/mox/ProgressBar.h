#pragma once

#include <chrono>
#include <string>

namespace Mox::Tool {

/// A progress bar on standard error. It is only shown on a terminal; otherwise Print only writes
/// its lines.
class ProgressBar
{
public:
    /// @param isWanted whether to show a bar at all
    ProgressBar(std::size_t count, bool isWanted);

    /// Removes the bar.
    ~ProgressBar();

    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Advance();

    /// Prints a line above the bar.
    void Print(const std::string& line);

private:
    void Draw();
    void Clear();

    std::size_t _count;
    std::size_t _done = 0;
    bool _isTerminal;
    bool _isShown = false;
    std::chrono::steady_clock::time_point _nextDraw{};
};

} // namespace Mox::Tool
