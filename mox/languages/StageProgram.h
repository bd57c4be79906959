#pragma once

#include "mox/cg/Module.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Languages {

/// A parameter of "main" or a sampler, and where it is in the program.
struct StageSlot
{
    const Cg::Variable* Of;
    std::string Name; ///< that it is to have
    int Location;     ///< of an input, an interpolant or a colour; unit of a sampler
    bool IsPosition;  ///< the position of a vertex, which has no location
};

struct BlockMember
{
    const Cg::Variable* Of; ///< need not be read by the stage
    std::string Name;       ///< that it is to have
    std::uint32_t Offset;   ///< in bytes, by the layout "std140"
};

/// Uniforms that a host fills together.
struct UniformBlock
{
    std::string Name;     ///< of the block, in every language
    std::string Variable; ///< that it is to be read by, where a language has one
    int Number; ///< of the set or group in which it is the first binding; where a language
                ///< has no sets, of the block itself
    std::vector<BlockMember> Members;
};

/// One stage of a program in the form that writers spell.
struct StageProgram
{
    const Cg::Module* Code; ///< lowered
    bool IsVertex;
    std::string Header;              ///< a line for a comment at the top, or nothing
    std::vector<StageSlot> Inputs;   ///< vertex attributes, or interpolants
    std::vector<StageSlot> Outputs;  ///< position and interpolants, or colours
    std::vector<StageSlot> Samplers; ///< uniforms of sampler types
    int SamplerSet;                  ///< set or group of all samplers, where a language has any
    int FirstSamplerBinding;         ///< in that set
    std::vector<UniformBlock> Blocks;
};

/// The text of a stage.
struct WrittenStage
{
    std::string Text;
    std::string EntryPoint;
    std::vector<std::pair<const Cg::Variable*, std::string>> Names; ///< of slots and block members
};

} // namespace Mox::Languages
