#include "mox/shader/ShaderRegister.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <iterator>
#include <ostream>

using Mox::Materials::Compose;

namespace {

// clang-format off
constexpr ShaderRegisterInfo registerInfos[] = {
    // Writable, Prefix,   Suffix, Count, Level, Marked
    {0, "UNKNOWN",      "",      1, 0, 1}, // RegisterUnknown
    {0, "ATTR",         "",     16, 0, 1}, // VertexAttribute
    {0, "register( c",  " )", 1024, 0, 1}, // VertexConstant
    {0, "TEXUNIT",      "",      4, 0, 0}, // VertexTextureUnit
    {1, "POSITION",     "",      1, 0, 1}, // VertexPosition
    {1, "PSIZE",        "",      1, 0, 1}, // VertexPointSize
    {1, "FOG",          "",      1, 0, 1}, // VertexFog
    {1, "COLOR",        "",      2, 0, 0}, // VertexColor
    {1, "BCOLOR",       "",      2, 0, 1}, // VertexBackColor
    {1, "TEXCOORD",     "",     10, 0, 1}, // VertexTexCoord
    {0, "WPOS",         "",      1, 1, 1}, // FragmentPosition
    {0, "COLOR",        "",      2, 1, 1}, // FragmentColorIn
    {0, "FACE",         "",      1, 1, 1}, // FragmentFace
    {0, "FOG",          "",      1, 1, 1}, // FragmentFog
    {0, "TEXCOORD",     "",     10, 1, 1}, // FragmentTexCoord
    {0, "TEXUNIT",      "",     16, 1, 0}, // FragmentTextureUnit
    {1, "COLOR",        "",      4, 1, 0}, // FragmentColorOut
    {1, "DEPTH",        "",      1, 1, 1}, // FragmentDepth
};
// clang-format on

} // namespace

const ShaderRegisterInfo& GetRegisterInfo(ShaderRegisterType type)
{
    const auto index = static_cast<std::uint32_t>(type);
    if (index >= std::size(registerInfos))
        throw ShaderError("invalid register type");
    return registerInfos[index];
}

ShaderRegister::ShaderRegister(ShaderRegisterType type, std::int32_t index)
    : Type(type), Index(index)
{}

bool ShaderRegister::IsWritable() const
{
    return GetRegisterInfo(Type).Writable != 0;
}

std::string ShaderRegister::FormatRegister() const
{
    const ShaderRegisterInfo& info = GetRegisterInfo(Type);
    if (info.Count > 1)
        return Compose(info.Prefix, Index, info.Suffix);
    return Compose(info.Prefix, info.Suffix);
}

std::ostream& operator<<(std::ostream& stream, const ShaderRegister& shaderRegister)
{
    return stream << shaderRegister.FormatRegister();
}
