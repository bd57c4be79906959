#pragma once

#include "mox/cg/Type.h"

#include <optional>
#include <span>
#include <string_view>

namespace Mox::Cg {

enum class Builtin : std::uint8_t
{
    // clang-format off
    Abs, Acos, All, Any, Asin, Atan, Atan2, Ceil, Clamp, Clip, Cos, Cosh, Cross, Ddx, Ddy, Degrees,
    Determinant, Distance, Dot, Exp, Exp2, Faceforward, Floor, Fmod, Frac, Fwidth, IsFinite,
    IsInf, IsNan, Ldexp, Length, Lerp, Lit, Log, Log10, Log2, Max, Min, Modf, Mul, Normalize, Pow,
    Radians, Reflect, Refract, Round, Rsqrt, Saturate, Sign, Sin, Sincos, Sinh, Smoothstep, Sqrt,
    Step, Tan, Tanh, Transpose, Trunc,
    // clang-format on
    Read,          ///< sampler, coordinates
    ReadProjected, ///< sampler, coordinates followed by their divisor
    ReadBiased,    ///< sampler, four coordinates, the last being the bias; when lowered: sampler,
                   ///< coordinates, bias
    ReadAtLevel,   ///< likewise with the level instead of the bias
    ReadGradient,  ///< sampler, coordinates and their two derivatives
};

/// A built-in function of Cg.
struct Intrinsic
{
    std::string_view Name;
    Builtin Id;

    /// One letter for each parameter; empty for functions with typing rules of their own:
    ///
    /// - g: floats, scalar or vector
    /// - n: the same, but also ints
    /// - b: bools
    /// - o: an output with the type of g
    /// - s: one float
    /// - v: a vector of three floats
    /// - m: a square matrix
    /// - x: any matrix or vector
    ///
    /// All parameters of a function with letter g, n or b have a common type: scalars are repeated
    /// and longer vectors truncated.
    std::string_view Parameters;

    /// g, n: the common type; c: bools in its shape; B: one bool; s: one scalar with its element
    /// type; 4, v: vectors of four and three components; m: the type of the parameter; t: that type
    /// transposed; 0: no result
    char Result;
};

/// All functions except texture reads, by name.
std::span<const Intrinsic> Intrinsics();

const Intrinsic& GetIntrinsic(Builtin id);

/// Returns the function with a name; null if there is none or if it reads textures.
const Intrinsic* FindIntrinsic(std::string_view name);

/// The properties of a texture function that are part of its name, such as "h3tex2Dproj".
struct TextureRead
{
    Element Result;      ///< of the result: Fixed, Half or Float
    int Components;      ///< number of components of the result
    Element Sampler;     ///< type of the sampler
    int Coordinates;     ///< number of coordinates in a plain read
    const Intrinsic* As; ///< Read, ReadProjected, ReadBiased or ReadAtLevel
};

std::optional<TextureRead> FindTextureRead(std::string_view name);

} // namespace Mox::Cg
