#include "ProgressBar.h"

#include "mox/Text.h"

#include <cstdlib>
#include <iostream>
#include <string_view>
#include <unistd.h>

namespace Mox::Tool {

namespace {

using Materials::Compose;

constexpr std::size_t width = 40;
constexpr std::chrono::milliseconds interval{100};
constexpr const char* clearLine = "\r\x1b[K";

/// Whether standard error supports clearLine.
bool IsTerminal()
{
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind && std::string_view(kind) != "dumb";
}

} // namespace

ProgressBar::ProgressBar(std::size_t count, bool isWanted)
    : _count(count), _isTerminal(isWanted && IsTerminal())
{}

ProgressBar::~ProgressBar()
{
    Clear();
}

void ProgressBar::Advance()
{
    ++_done;
    Draw();
}

void ProgressBar::Print(const std::string& line)
{
    Clear();
    std::cerr << line + "\n";
}

void ProgressBar::Draw()
{
    const auto now = std::chrono::steady_clock::now();
    if (!_isTerminal || now < _nextDraw)
        return;
    const std::size_t filled = width * _done / _count;
    std::cerr << Compose(clearLine, "[", std::string(filled, '#'), std::string(width - filled, '.'),
                         "] ", _done, "/", _count);
    _isShown = true;
    _nextDraw = now + interval;
}

void ProgressBar::Clear()
{
    if (_isShown)
        std::cerr << clearLine;
    _isShown = false;
    _nextDraw = {};
}

} // namespace Mox::Tool
