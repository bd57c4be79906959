#pragma once

#include "mox/Export.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/// Element type of a Cg value. Can hold any 32-bit value; only the named ones have a Cg name.
enum class ComponentType : std::int32_t
{
    Unknown = 0,
    Void = 1,
    Float = 2,
    Half = 3,
    Fixed = 4,
    Int = 5,
    Bool = 6,
    Sampler1D = 7,
    Sampler2D = 8,
    Sampler3D = 9,
    SamplerCube = 10,
    SamplerRect = 11,
};

/// Returns the Cg name of an element type, a string constant.
/// @throws ShaderError if the value is not one of the named ones
MOX_API const char* GetComponentName(ComponentType component);

/// Type of a Cg value. The numbers are never checked.
class MOX_API ShaderType
{
public:
    ShaderType(ComponentType component, std::int32_t columns, std::int32_t rows,
               std::int32_t arrayLength);

    friend bool operator==(const ShaderType& a, const ShaderType& b) = default;

    /// Returns the type as written in Cg: "float", "float3", "float4x3" (rows first), "float3[8]".
    /// @throws ShaderError if Component has no Cg name
    std::string Format() const;

    /// Returns the declaration of a variable of this type; array brackets follow the name.
    /// @throws ShaderError if Component has no Cg name
    std::string FormatDeclaration(const std::string& name) const;

    ComponentType Component;
    std::int32_t Columns;     ///< components of a vector or second dimension of a matrix; otherwise
                              ///< 1
    std::int32_t Rows;        ///< first dimension of a matrix; otherwise 1
    std::int32_t ArrayLength; ///< number of elements of an array; otherwise 1
};

/// Writes Format(), independent of the locale of the stream.
MOX_API std::ostream& operator<<(std::ostream& stream, const ShaderType& type);
