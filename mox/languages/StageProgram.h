#pragma once

#include "mox/cg/Module.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Languages {

/// A parameter of "main" or a sampler, and its location in the program.
struct StageSlot
{
    const Cg::Variable* Of;
    std::string Name; ///< name to write
    int Location;     ///< of an input, interpolant or colour; for a sampler, its texture unit
    bool IsPosition;  ///< whether it is the vertex position, which has no location
};

struct BlockMember
{
    const Cg::Variable* Of; ///< the stage does not necessarily read it
    std::string Name;       ///< name to write
    std::uint32_t Offset;   ///< in bytes, in the layout "std140"
};

/// Uniforms that a host sets together.
struct UniformBlock
{
    std::string Name;     ///< name of the block, in every language
    std::string Variable; ///< name of the variable through which the block is read, in languages
                          ///< that have one
    int Number; ///< number of the set or group in which it is the first binding; in a language
                ///< without sets, number of the block
    std::vector<BlockMember> Members;
};

/// One stage of a program, as input for the language writers.
struct StageProgram
{
    const Cg::Module* Code; ///< lowered
    bool IsVertex;
    std::string Header;              ///< text of a comment at the top; may be empty
    std::vector<StageSlot> Inputs;   ///< vertex attributes, or interpolants
    std::vector<StageSlot> Outputs;  ///< position and interpolants, or colours
    std::vector<StageSlot> Samplers; ///< uniforms of sampler types
    int SamplerSet;                  ///< set or group of all samplers, in languages that have them
    int FirstSamplerBinding;         ///< binding of the first sampler in that set
    std::vector<UniformBlock> Blocks;
};

/// The source of a stage in a language.
struct WrittenStage
{
    std::string Text;
    std::vector<int> SourceLines; ///< for each line of Text, the line of the Cg source that it
                                  ///< comes from, or 0
    std::string EntryPoint;
    std::vector<std::pair<const Cg::Variable*, std::string>> Names; ///< names written for slots and
                                                                    ///< block members
};

} // namespace Mox::Languages
