#pragma once

#include "mox/shader/ShaderType.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// Where programs have their uniform blocks and samplers.
constexpr std::uint32_t descriptorSet = 0;
constexpr std::uint32_t vertexBlockBinding = 0;
constexpr std::uint32_t fragmentBlockBinding = 1;
constexpr std::uint32_t firstSamplerBinding = 2;

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
};

/// The uniforms of one stage, in the layout "std140".
struct UniformBlock
{
    std::string Name;
    std::uint32_t Binding;
    std::uint32_t Size; ///< bytes
    std::vector<UniformMember> Members;
};

/// A texture with its sampler.
struct SamplerSlot
{
    std::size_t Parameter; ///< index into the program's parameters
    std::string Name;      ///< as the reflection has it
    ShaderType Type;
    std::uint32_t Binding; ///< of the descriptor set
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
    std::optional<UniformBlock> Block;
    std::vector<SamplerSlot> Samplers;
    std::vector<StageVariable> Inputs;
    std::vector<StageVariable> Outputs;
};

} // namespace Mox::Host
