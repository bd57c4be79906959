#pragma once

#include "mox/program/ProgramPlan.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

class ProgramCode;

/// Where a line of a program comes from.
struct LineOrigin
{
    std::string Node;         ///< id of a node; empty if the line belongs to none
    std::size_t BodyLine = 0; ///< number of the line in the body of the node's function, from 1; 0
                              ///< outside of bodies. The brace that closes a body counts as its
                              ///< last line

    friend bool operator==(const LineOrigin& a, const LineOrigin& b) = default;
};

/// The Cg source of one stage, with the entry point "main".
struct StageProgram
{
    std::string Text;
    std::vector<LineOrigin> Lines; ///< one for each line of Text
    /// Place in Text where the entry point begins, its last part; none if all of it is to be read.
    std::size_t MainBegin = std::string::npos;
};

/// A pair of Cg programs for one material, with the plan that they were written from.
struct CgProgram
{
    ProgramPlan Plan;
    StageProgram Vertex;
    StageProgram Fragment;
    std::string Header = {}; ///< what a comment at the top of programs in other languages says;
                             ///< they have none if it is empty
    std::shared_ptr<const ProgramCode> Code = {}; ///< the texts as CheckCode has read them, or null
};

} // namespace Mox::Host
