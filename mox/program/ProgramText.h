#pragma once

#include "mox/program/CgProgram.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Mox::Host {

/// Collects the lines of a program together with the node that each comes from.
class ProgramText
{
public:
    /// Appends whole lines; a missing newline at the end is added.
    /// @param node id of the node that they come from, if any
    void Append(std::string_view lines, const std::string& node = "");

    /// Appends the body of a function of a node in braces.
    void AppendBody(std::string_view lines, const std::string& node);

    /// Appends an empty line, unless the text is empty or ends with one.
    void Separate();

    /// What follows is the entry point.
    void BeginMain() { _program.MainBegin = _program.Text.size(); }

    StageProgram Take() { return std::move(_program); }

private:
    /// @returns the number of lines
    std::size_t AppendText(std::string_view lines);

    StageProgram _program;
};

} // namespace Mox::Host
