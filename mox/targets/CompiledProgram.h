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

/// The number of a uniform block: its descriptor set, or its own number where the target has no
/// sets.
constexpr std::uint32_t NumberOf(UniformRate rate)
{
    return static_cast<std::uint32_t>(rate);
}
constexpr std::uint32_t descriptorSetCount = 3;
constexpr std::uint32_t blockBinding = 0; ///< in its set

/// All textures go with the material.
constexpr std::uint32_t samplerSet = NumberOf(UniformRate::Material);
constexpr std::uint32_t firstSamplerBinding = 1;

/// A uniform in its block.
struct UniformMember
{
    std::size_t Parameter; ///< index into the program's parameters
    std::string Name;      ///< as the reflection has it
    ShaderType Type;
    std::uint32_t Offset;       ///< bytes from the start of the block
    std::uint32_t Size;         ///< bytes
    std::uint32_t ArrayStride;  ///< bytes from element to element; 0 if it is no array
    std::uint32_t MatrixStride; ///< bytes from column to column; 0 if it is no matrix
    bool InVertex;              ///< read by the vertex stage
    bool InFragment;            ///< read by the fragment stage

    bool IsRead() const { return InVertex || InFragment; }
};

/// The uniforms that a host sets together, in the layout "std140". A stage declares the whole block
/// if it reads a member of it.
struct UniformBlock
{
    UniformRate Rate;
    std::string Name;
    std::uint32_t Size; ///< bytes, a multiple of 16
    std::vector<UniformMember> Members;
};

/// Whether a stage declares a block.
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
    std::string Name;      ///< as the reflection has it
    ShaderType Type;
    std::uint32_t Binding; ///< of the descriptor set samplerSet
    std::uint32_t Unit;    ///< where the target counts textures apart
};

/// A vertex input or an interpolant.
struct StageVariable
{
    std::optional<std::size_t> Parameter; ///< of a vertex input: index of the parameter
    std::string Name;                     ///< as the reflection has it
    ShaderType Type;
    std::uint32_t Location;
};

/// What one stage declares, the same in every target. What has no effect on the surface is not
/// declared.
struct StageInterface
{
    std::vector<SamplerSlot> Samplers;
    std::vector<StageVariable> Inputs;
    std::vector<StageVariable> Outputs;
};

/// One stage in one target.
struct TargetProgram
{
    CompileTarget Target;
    ProgramStage Stage;
    std::string Bytes;      ///< text, or the words of the module in the machine's byte order
    std::string EntryPoint; ///< name of the function at which it starts
    std::vector<std::string> Names; ///< of the parameters in it; empty for one that it does not
                                    ///< declare
};

/// A pair of programs in all wanted targets.
struct CompiledProgram
{
    std::vector<ProgramParameter> Parameters; ///< those of the program, in its order, and then what
                                              ///< else the environment declares
    std::vector<UniformBlock> Blocks; ///< those that a stage reads, in the order of their numbers
    StageInterface Vertex;
    StageInterface Fragment;
    std::vector<TargetProgram> Programs; ///< vertex before fragment for each target, in their order

    const StageInterface& InterfaceOf(ProgramStage stage) const
    {
        return stage == ProgramStage::Vertex ? Vertex : Fragment;
    }
};

} // namespace Mox::Host
