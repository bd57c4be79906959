#pragma once

#include "mox/Export.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/// Element type of a Cg value. Any 32-bit value can be held; texts exist for the named ones.
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

/// The Cg word of an element type, zero-terminated and constant.
/// @throws ShaderError if the value is none of those named
MOX_API const char* GetComponentName(ComponentType component);

/// Type of a Cg value. No operation constrains the numbers.
class MOX_API ShaderType
{
public:
    ShaderType(ComponentType component, std::int32_t columns, std::int32_t rows,
               std::int32_t arrayLength);

    friend bool operator==(const ShaderType& a, const ShaderType& b) = default;

    /// The type as Cg writes it: "float", "float3", "float4x3" (rows first), "float3[8]".
    /// @throws ShaderError if Component has no word
    std::string Format() const;

    /// The declaration of a variable of this type, in which the array brackets follow the name.
    /// @throws ShaderError if Component has no word
    std::string FormatDeclaration(const std::string& name) const;

    ComponentType Component;
    std::int32_t Columns;     ///< components of a vector or second dimension of a matrix; else 1
    std::int32_t Rows;        ///< first dimension of a matrix; else 1
    std::int32_t ArrayLength; ///< elements of an array; else 1
};

/// Writes Format(), whatever the locale of the stream.
MOX_API std::ostream& operator<<(std::ostream& stream, const ShaderType& type);
