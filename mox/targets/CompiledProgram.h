#pragma once

#include "mox/program/EnvironmentUniform.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/ProgramStage.h"
#include "mox/shader/ShaderType.h"
#include "mox/targets/CompileTarget.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// Returns the number of a uniform block: its descriptor set, or its block number if the target
/// does not have descriptor sets.
constexpr std::uint32_t NumberOf(UniformRate rate)
{
    return static_cast<std::uint32_t>(rate);
}
constexpr std::uint32_t descriptorSetCount = 3;
constexpr std::uint32_t blockBinding =
    0; ///< in its descriptor set; the writers write the same number

/// All textures are in the descriptor set of the material.
constexpr std::uint32_t samplerSet = NumberOf(UniformRate::Material);
constexpr std::uint32_t firstSamplerBinding = 1;

/// A uniform in a block.
struct UniformMember
{
    std::size_t Parameter; ///< index into the program's parameters
    std::string Name;      ///< name in the reflection
    ShaderType Type;
    std::uint32_t Offset;       ///< in bytes from the start of the block
    std::uint32_t Size;         ///< in bytes
    std::uint32_t ArrayStride;  ///< in bytes between elements; 0 if it is not an array
    std::uint32_t MatrixStride; ///< in bytes between columns; 0 if it is not a matrix
    bool InVertex;              ///< whether the vertex stage reads it
    bool InFragment;            ///< whether the fragment stage reads it

    bool IsRead() const { return InVertex || InFragment; }
};

/// The uniforms that a host sets together, in the std140 layout. A stage declares the whole block
/// if it reads one of its members.
struct UniformBlock
{
    UniformRate Rate;
    std::string Name;
    std::uint32_t Size; ///< in bytes, a multiple of 16
    std::vector<UniformMember> Members;
};

/// Returns whether a stage declares a block.
inline bool IsReadIn(const UniformBlock& block, ProgramStage stage)
{
    return std::any_of(block.Members.begin(), block.Members.end(), [&](const auto& member) {
        return stage == ProgramStage::Vertex ? member.InVertex : member.InFragment;
    });
}

/// A texture with its sampler.
struct SamplerSlot
{
    std::size_t Parameter; ///< index into the program's parameters
    std::string Name;      ///< name in the reflection
    ShaderType Type;
    std::uint32_t Binding; ///< in the descriptor set samplerSet
    std::uint32_t Unit;    ///< for targets that number textures separately
};

/// A vertex input or an interpolant.
struct StageVariable
{
    std::optional<std::size_t> Parameter; ///< index of the parameter, for a vertex input
    std::string Name;                     ///< name in the reflection
    ShaderType Type;
    std::uint32_t Location;
};

/// The declarations of one stage, which are the same in all targets. Inputs without an effect on
/// the surface are not declared.
struct StageInterface
{
    std::vector<SamplerSlot> Samplers;
    std::vector<StageVariable> Inputs;
    std::vector<StageVariable> Outputs;
};

/// One stage in one target language.
struct TargetProgram
{
    CompileTarget Target;
    ProgramStage Stage;
    std::string Bytes;        ///< source, or the words of the SPIR-V module in native byte order
    std::vector<int> CgLines; ///< for each line of a source, the line of the stage's Cg program
                              ///< that it comes from, or 0
    std::string EntryPoint;   ///< name of the entry function
    std::vector<std::string> Names; ///< of the parameters; empty if the stage does not declare it
};

/// A pair of programs in all requested targets.
struct CompiledProgram
{
    std::vector<ProgramParameter> Parameters; ///< parameters of the program in its order, then the
                                              ///< remaining environment uniforms
    std::vector<UniformBlock> Blocks;         ///< blocks that a stage reads, in numeric order
    StageInterface Vertex;
    StageInterface Fragment;
    std::vector<TargetProgram> Programs; ///< vertex, then fragment, for each target in order

    const StageInterface& InterfaceOf(ProgramStage stage) const
    {
        return stage == ProgramStage::Vertex ? Vertex : Fragment;
    }
};

} // namespace Mox::Host
