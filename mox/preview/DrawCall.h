#pragma once

#include "mox/compile/SpirvCompiler.h"
#include "mox/decode/TextureImage.h"
#include "mox/document/SamplerState.h"
#include "mox/targets/StageInterface.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Host {

/// Values for a vertex input.
struct DrawStream
{
    std::uint32_t Location;
    std::uint32_t Components; ///< 1 to 4
    std::vector<float> Values;
};

/// A texture with all its levels.
struct DrawTexture
{
    std::uint32_t Binding; ///< of the descriptor set samplerSet
    bool Is1D;             ///< reads the top row of the images
    std::vector<TextureImage> Levels;
    SamplerState Sampler = {}; ///< empty is "repeat", "trilinear" and all anisotropy that there is
};

/// The contents of a uniform block.
struct DrawUniforms
{
    std::uint32_t Set = 0; ///< in which it is the binding blockBinding
    std::vector<std::byte> Bytes;
};

struct DrawShader
{
    SpirvWords Module;
    std::string EntryPoint;
};

/// How what is drawn meets what is there. Factors and comparisons are words of the render state in
/// material documents.
struct DrawState
{
    bool BlendsAlpha = false; ///< else alpha has no effect
    std::string SourceBlend = "sourceAlpha";
    std::string DestBlend = "oneMinusSourceAlpha";
    bool TestsDepth = true;
    std::string DepthFunc = "lessOrEqual";
    bool WritesDepth = true;
    bool CullsBack = false;
    bool WritesAlpha = false; ///< else pictures stay opaque
};

/// Triangles, and all that is needed to draw them.
struct DrawCall
{
    DrawShader Vertex;
    DrawShader Fragment;
    std::vector<DrawStream> Streams;
    std::vector<DrawTexture> Textures;
    std::vector<DrawUniforms> Uniforms;
    std::vector<std::uint32_t> Indices;
    DrawState State;
    bool WritesColour = true; ///< else the fragment program has no output
};

} // namespace Mox::Host
