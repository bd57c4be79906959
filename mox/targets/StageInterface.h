#pragma once

#include "mox/program/EnvironmentUniform.h"
#include "mox/program/ProgramStage.h"
#include "mox/shader/ShaderType.h"

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
bool IsReadIn(const UniformBlock& block, ProgramStage stage);

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

} // namespace Mox::Host
