#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The language as which glslang parses a source.
enum class GlslangInput
{
    Glsl,
    VulkanGlsl,
    Essl,
    Hlsl,
};

/// Returns glslang's messages about a source; empty if it is valid.
std::string ReadWithGlslang(const std::string& text, GlslangInput input, bool isVertex);

/// Compiles a source to SPIR-V. In HLSL, inputs and outputs are numbered in order, and the block in
/// register bN is in set N.
/// @throws std::runtime_error with glslang's messages and the source if it is refused
std::vector<std::uint32_t> CompileWithGlslang(const std::string& text, GlslangInput input,
                                              bool isVertex);
