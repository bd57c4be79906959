#pragma once

#include <chrono>
#include <string>

namespace Mox::Tool {

/// A bar on standard error that shows how far a run has got. It exists on a terminal only;
/// elsewhere nothing of it is written, and Print passes its lines through.
class ProgressBar
{
public:
    /// @param isWanted whether there is a bar at all
    ProgressBar(std::size_t count, bool isWanted);

    /// Takes the bar away.
    ~ProgressBar();

    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void Advance();

    /// Writes a line above the bar.
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
