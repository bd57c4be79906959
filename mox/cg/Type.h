#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Cg {

/// The element type of a value. The order is that of Cg's arithmetic conversions: of two operands,
/// the one with the lower value is converted.
enum class Element : std::uint8_t
{
    Void,
    Bool,
    Int,
    Fixed,
    Half,
    Float,
    Sampler1D,
    Sampler2D,
    Sampler3D,
    SamplerCube,
    SamplerRect,
    Struct,
};

struct StructType;

/// The type of a value: a scalar, vector, matrix, sampler or struct, or an array of one of these.
struct Type
{
    Element Of = Element::Void;
    std::uint8_t Rows = 1;    ///< of a matrix, 2 to 4; otherwise 1
    std::uint8_t Columns = 1; ///< of a matrix, or components of a vector; otherwise 1
    std::uint16_t Length = 0; ///< number of elements of an array; otherwise 0
    const StructType* Structure = nullptr;

    friend bool operator==(const Type& a, const Type& b) = default;

    bool IsArray() const { return Length > 0; }
    bool IsSampler() const { return Of >= Element::Sampler1D && Of <= Element::SamplerRect; }

    /// Whether the type is a scalar, vector or matrix.
    bool IsNumeric() const { return Of >= Element::Bool && Of <= Element::Float && !IsArray(); }
    bool IsScalar() const { return IsNumeric() && Rows == 1 && Columns == 1; }
    bool IsVector() const { return IsNumeric() && Rows == 1 && Columns > 1; }
    bool IsMatrix() const { return IsNumeric() && Rows > 1; }
    bool HasFloats() const { return Of >= Element::Fixed && Of <= Element::Float; }

    /// The same shape with another element type.
    Type With(Element element) const;

    /// The type that an index selects: an element of an array, a row of a matrix, a component of a
    /// vector.
    Type Selected() const;

    /// The type as it is written in Cg, such as "float4x3" or "half3[2]".
    std::string Format() const;
};

/// The type of a scalar, or of a vector of up to four components.
Type VectorType(Element element, int columns);

struct StructMember
{
    std::string_view Name;
    Type Of;
};

struct StructType
{
    std::string_view Name;
    std::vector<StructMember> Members;
};

/// Finds the built-in type with a name, such as "half3" or "sampler2D". Matrices with a single row
/// or column are not supported, since most languages have none.
/// @returns whether there is such a type
bool FindBuiltInType(std::string_view word, Type& type);

/// Whether an implicit conversion exists: scalars are repeated, vectors and matrices truncated.
bool Converts(const Type& from, const Type& to);

} // namespace Mox::Cg
