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
    ReadProjected, ///< sampler, coordinates with their divisor behind them
    ReadBiased,    ///< sampler, four coordinates, of which the last is the bias; lowered: sampler,
                   ///< coordinates, bias
    ReadAtLevel,   ///< the same with the level
    ReadGradient,  ///< sampler, coordinates and their two derivatives
};

/// A function of Cg's library.
struct Intrinsic
{
    std::string_view Name;
    Builtin Id;

    /// A letter for each parameter. Those of one function among g, n and b have one type, to which
    /// scalars are repeated and longer vectors cut:
    /// g floats, scalar or vector; n the same or ints; b bools; o an output of the type of g;
    /// s one float; v a vector of three floats; m a square matrix; x any matrix or vector.
    /// Empty for what is typed in a way of its own.
    std::string_view Parameters;

    /// g or n the common type, c bools of its shape, B one bool, s one number of its elements, 4
    /// and v vectors of four and of three, m the type of the parameter, t that transposed, 0
    /// nothing.
    char Result;
};

/// All functions but the texture reads, by name.
std::span<const Intrinsic> Intrinsics();

const Intrinsic& GetIntrinsic(Builtin id);

/// The function of a name; null if there is none or if it reads textures.
const Intrinsic* FindIntrinsic(std::string_view name);

/// A texture read as its name describes it, such as "h3tex2Dproj".
struct TextureRead
{
    Element Result;      ///< of the value: Fixed, Half or Float
    int Components;      ///< of the value
    Element Sampler;     ///< the kind of sampler
    int Coordinates;     ///< that a plain read takes
    const Intrinsic* As; ///< Read, ReadProjected, ReadBiased or ReadAtLevel
};

std::optional<TextureRead> FindTextureRead(std::string_view name);

} // namespace Mox::Cg
