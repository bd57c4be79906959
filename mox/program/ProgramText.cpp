#include "mox/program/ProgramText.h"

#include <algorithm>

namespace Mox::Host {

std::size_t ProgramText::AppendText(std::string_view lines)
{
    if (lines.empty())
        return 0;
    _program.Text += lines;
    const auto count = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
    if (lines.back() == '\n')
        return count;
    _program.Text += '\n';
    return count + 1;
}

void ProgramText::Append(std::string_view lines, const std::string& node)
{
    _program.Lines.insert(_program.Lines.end(), AppendText(lines), {node});
}

void ProgramText::AppendBody(std::string_view lines, const std::string& node)
{
    Append("{\n");
    const std::size_t count = AppendText(lines);
    for (std::size_t line = 1; line <= count; ++line)
        _program.Lines.push_back({node, line});
    _program.Lines.insert(_program.Lines.end(), AppendText("}\n"), {node, count});
}

void ProgramText::Separate()
{
    if (!_program.Text.empty() && !_program.Text.ends_with("\n\n"))
        Append("\n");
}

} // namespace Mox::Host
