#pragma once

#include "mox/Export.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/// Types of hardware registers and semantics. Can hold any 32-bit value.
enum class ShaderRegisterType : std::uint32_t
{
    RegisterUnknown = 0, ///< not bound to a register
    VertexAttribute = 1,
    VertexConstant = 2,
    VertexTextureUnit = 3,
    VertexPosition = 4,
    VertexPointSize = 5,
    VertexFog = 6,
    VertexColor = 7,
    VertexBackColor = 8,
    VertexTexCoord = 9,
    FragmentPosition = 10,
    FragmentColorIn = 11,
    FragmentFace = 12,
    FragmentFog = 13,
    FragmentTexCoord = 14,
    FragmentTextureUnit = 15,
    FragmentColorOut = 16,
    FragmentDepth = 17,
};

/// Properties of a register type.
struct ShaderRegisterInfo
{
    std::uint32_t Writable; ///< 1 if shaders write the register, 0 if they read it
    const char* Prefix;     ///< text before the index; not unique
    const char* Suffix;     ///< text after the index
    std::int32_t Count;     ///< number of registers of this type
    std::uint32_t Level;    ///< 0 for the vertex stage, 1 for the fragment stage
    std::uint32_t Marked;   ///< for the host; not used by the library
};

/// Returns the properties of a register type.
/// @throws ShaderError if the value is not one of the named ones
MOX_API const ShaderRegisterInfo& GetRegisterInfo(ShaderRegisterType type);

/// The register or semantic of a parameter. The index is not checked; the host may limit it.
class MOX_API ShaderRegister
{
public:
    ShaderRegister() = default;
    ShaderRegister(ShaderRegisterType type, std::int32_t index);

    friend bool operator==(const ShaderRegister& a, const ShaderRegister& b) = default;

    /// Whether shaders write the register.
    /// @throws ShaderError if Type is not one of the named values; likewise FormatRegister
    bool IsWritable() const;

    /// Returns the register as written in Cg, with the index if there are several of its type.
    std::string FormatRegister() const;

    ShaderRegisterType Type = ShaderRegisterType::RegisterUnknown;
    std::int32_t Index = 0;
};

/// Writes FormatRegister(), independent of the locale of the stream.
MOX_API std::ostream& operator<<(std::ostream& stream, const ShaderRegister& shaderRegister);
