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
    const Cg::Variable* Of;
    std::string Name;
    std::uint32_t Offset; ///< in bytes, by the layout "std140"
};

/// Uniforms that a host fills together.
struct UniformBlock
{
    std::string Name; ///< of the block
    int Binding;      ///< in every language that has numbers for it
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
    int FirstSamplerBinding;         ///< where a language numbers blocks and samplers together
    std::vector<UniformBlock> Blocks;
};

/// How exact half and fixed are.
enum class Precision
{
    Full,    ///< as float
    Relaxed, ///< as the language's own type or qualifier for such numbers
};

/// The text of a stage.
struct WrittenStage
{
    std::string Text;
    std::string EntryPoint;
    std::vector<std::pair<const Cg::Variable*, std::string>> Names; ///< of slots and block members
};

} // namespace Mox::Languages
