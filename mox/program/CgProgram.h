#pragma once

#include "mox/program/ProgramPlan.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

class ProgramCode;

/// The origin of a line of a program.
struct LineOrigin
{
    std::string Node;         ///< id of the authoring node; empty if there is none
    std::size_t BodyLine = 0; ///< line number within the body of the node's function, from 1; 0
                              ///< outside of bodies. The closing brace of a body counts as its last
                              ///< line

    friend bool operator==(const LineOrigin& a, const LineOrigin& b) = default;
};

/// The Cg source of one stage, with the entry point "main".
struct StageProgram
{
    std::string Text;
    std::vector<LineOrigin> Lines; ///< one entry for each line of Text
    /// Offset in Text of the entry point, which is the last part; npos if there is no separate
    /// entry point and all of Text is to be read.
    std::size_t MainBegin = std::string::npos;
};

/// A pair of Cg programs for one material, and the plan that they were written from.
struct CgProgram
{
    ProgramPlan Plan;
    StageProgram Vertex;
    StageProgram Fragment;
    std::string Header = {}; ///< comment for the top of programs in other languages; if empty, they
                             ///< have no such comment
    std::shared_ptr<const ProgramCode> Code = {}; ///< the functions as parsed by CheckCode, or null
};

} // namespace Mox::Host
