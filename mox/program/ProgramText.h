#pragma once

#include "mox/program/CgProgram.h"

#include <string>
#include <string_view>

namespace Mox::Host {

/// Collects the lines of a program together with the node that each comes from.
class ProgramText
{
public:
    /// Appends whole lines; a missing newline at the end is added.
    /// @param node id of the node that they come from, if any
    void Append(std::string_view lines, const std::string& node = "");

    /// Appends an empty line, unless the text is empty or ends with one.
    void Separate();

    StageProgram Take() { return std::move(_program); }

private:
    StageProgram _program;
};

} // namespace Mox::Host
