#include "mox/program/ProgramText.h"

#include <algorithm>

namespace Mox::Host {

void ProgramText::Append(std::string_view lines, const std::string& node)
{
    if (lines.empty())
        return;
    _program.Text += lines;
    auto count = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
    if (lines.back() != '\n') {
        _program.Text += '\n';
        ++count;
    }
    _program.LineNodes.insert(_program.LineNodes.end(), count, node);
}

void ProgramText::Separate()
{
    if (!_program.Text.empty() && !_program.Text.ends_with("\n\n"))
        Append("\n");
}

} // namespace Mox::Host
