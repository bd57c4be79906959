#pragma once

#include "mox/program/CgProgram.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Mox::Host {

/// Collects the lines of a program together with the node that each line comes from.
class ProgramText
{
public:
    /// Appends whole lines; adds a newline at the end if it is missing.
    /// @param node id of the node that they come from, if any
    void Append(std::string_view lines, const std::string& node = "");

    /// Appends the body of a node's function in braces.
    void AppendBody(std::string_view lines, const std::string& node);

    /// Appends an empty line, unless the text is empty or ends with one.
    void Separate();

    /// Marks the start of the entry point.
    void BeginMain() { _program.MainBegin = _program.Text.size(); }

    StageProgram Take() { return std::move(_program); }

private:
    /// @returns the number of lines appended
    std::size_t AppendText(std::string_view lines);

    StageProgram _program;
};

} // namespace Mox::Host
