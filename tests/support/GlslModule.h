#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What glslang reads a text as.
enum class GlslangInput
{
    Glsl,
    VulkanGlsl,
    Essl,
    Hlsl,
};

/// What glslang has to say against a text; empty if nothing.
std::string ReadWithGlslang(const std::string& text, GlslangInput input, bool isVertex);

/// A text as a SPIR-V module. Inputs and outputs of HLSL are numbered in their order, and the block
/// in register bN is in set N.
/// @throws std::runtime_error with glslang's messages and the text if it is refused
std::vector<std::uint32_t> CompileWithGlslang(const std::string& text, GlslangInput input,
                                              bool isVertex);
