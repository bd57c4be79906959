#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/document/DocumentTextures.h"
#include "mox/preview/TextureShape.h"
#include "mox/targets/ProgramCompiler.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Host {

/// Values of a vertex input.
struct DrawStream
{
    std::uint32_t Location;
    std::uint32_t Components; ///< 1 to 4
    std::vector<float> Values;
};

/// A texture with all its mip levels.
struct DrawTexture
{
    std::uint32_t Binding; ///< in the descriptor set samplerSet
    TextureShape Shape;
    std::vector<TextureImage> Levels;
    SamplerState Sampler = {}; ///< empty fields mean "repeat", "trilinear" and maximum anisotropy
};

/// The contents of a uniform block.
struct DrawUniforms
{
    std::uint32_t Set = 0; ///< index of the descriptor set; the binding in it is blockBinding
    std::vector<std::byte> Bytes;
};

struct DrawShader
{
    SpirvWords Module;
    std::string EntryPoint;
};

/// Blending, depth test and culling. Factors and comparisons have the values of the render state in
/// material documents.
struct DrawState
{
    bool BlendsAlpha = false; ///< if false, alpha has no effect
    std::string SourceBlend = "sourceAlpha";
    std::string DestBlend = "oneMinusSourceAlpha";
    bool TestsDepth = true;
    std::string DepthFunc = "lessOrEqual";
    bool WritesDepth = true;
    bool CullsBack = false;
    bool WritesAlpha = false; ///< if false, images stay opaque
};

/// Triangles, and everything needed to draw them.
struct DrawCall
{
    DrawShader Vertex;
    DrawShader Fragment;
    std::vector<DrawStream> Streams;
    std::vector<DrawTexture> Textures;
    std::vector<DrawUniforms> Uniforms;
    std::vector<std::uint32_t> Indices;
    DrawState State;
    bool WritesColour = true; ///< if false, the fragment program has no output
};

} // namespace Mox::Host
