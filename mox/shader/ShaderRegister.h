#pragma once

#include "mox/Export.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/// Class of hardware registers and semantics. Any 32-bit value can be held.
enum class ShaderRegisterType : std::uint32_t
{
    RegisterUnknown = 0, ///< no register is bound
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

/// What is known of a register class.
struct ShaderRegisterInfo
{
    std::uint32_t Writable; ///< 1 when a shader writes the register, 0 when it reads it
    const char* Prefix;     ///< text before the index; not unique among the classes
    const char* Suffix;     ///< text behind the index
    std::int32_t Count;     ///< number of registers of the class
    std::uint32_t Level;    ///< 0 the vertex stage, 1 the fragment stage
    std::uint32_t Marked;   ///< for the host; nothing here reads it
};

/// The constant row of a register class.
/// @throws ShaderError if the value is none of those named
MOX_API const ShaderRegisterInfo& GetRegisterInfo(ShaderRegisterType type);

/// A register or semantic that a parameter stands on. The index is not checked against the class;
/// a bound, where wanted, is the host's.
class MOX_API ShaderRegister
{
public:
    ShaderRegister() = default;
    ShaderRegister(ShaderRegisterType type, std::int32_t index);

    friend bool operator==(const ShaderRegister& a, const ShaderRegister& b) = default;

    /// Whether a shader writes the register.
    /// @throws ShaderError if Type is none of those named, as does FormatRegister
    bool IsWritable() const;

    /// The register as Cg writes it; the index shows exactly for classes of more than one register.
    std::string FormatRegister() const;

    ShaderRegisterType Type = ShaderRegisterType::RegisterUnknown;
    std::int32_t Index = 0;
};

/// Writes FormatRegister(), whatever the locale of the stream.
MOX_API std::ostream& operator<<(std::ostream& stream, const ShaderRegister& shaderRegister);
