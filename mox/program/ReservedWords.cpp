#include "mox/program/ReservedWords.h"

#include "mox/Identifier.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace Mox::Host {

namespace {

using Words = std::set<std::string, std::less<>>;

Words Split(const char* text)
{
    Words words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;)
        words.insert(word);
    return words;
}

/// Includes functions: a parameter with the name of a function would be legal, but not every
/// compiler tells them apart.
const Words& CgWords()
{
    static const Words words = Split(R"(
asm asm_fragment auto bool break case cast catch char class column_major compile const const_cast
continue decl default delete discard do double dword dynamic_cast else emit enum explicit extern
false fixed float for friend get goto half if in inline inout int interface long main matrix
mutable namespace new operator out packed pass pixelfragment pixelshader private protected public
register reinterpret_cast return row_major sampler sampler1D sampler2D sampler3D samplerCUBE
samplerRECT sampler_state shared short signed sizeof static static_cast string struct switch
technique template texture texture1D texture2D texture3D textureCUBE textureRECT this throw true
try typedef typeid typename uniform union unsigned using varying vector vertexfragment vertexshader
virtual void volatile while
abs acos all any asin atan atan2 bitCount bitfieldExtract bitfieldInsert bitfieldReverse ceil clamp
clip cos cosh cross ddx ddy degrees determinant distance dot exp exp2 faceforward findLSB findMSB
floatToIntBits floatToRawIntBits floor fmod frac frexp fwidth intBitsToFloat inverse isfinite isinf
isnan ldexp length lerp lit log log10 log2 max min modf mul normalize pack pack_2half pack_2ushort
pack_4byte pack_4ubyte pow radians reflect refract round rsqrt saturate sign sin sincos sinh
smoothstep sqrt step tan tanh transpose trunc unpack unpack_2half unpack_2ushort unpack_4byte
unpack_4ubyte)");
    return words;
}

/// Whether a word is a type, without the dimensions that follow it in "float3" and "float4x4".
bool IsScalarType(std::string_view word)
{
    constexpr std::string_view types[] = {"bool", "char", "double", "fixed", "float",
                                          "half", "int",  "long",   "short", "unsigned"};
    return std::find(std::begin(types), std::end(types), word) != std::end(types);
}

/// Removes dimensions: "float4x4" and "float3" become "float".
std::string_view WithoutDimensions(std::string_view name)
{
    const auto dropDimension = [&] {
        const bool isDimension = name.size() > 1 && name.back() >= '1' && name.back() <= '4';
        if (isDimension)
            name.remove_suffix(1);
        return isDimension;
    };
    if (dropDimension() && name.back() == 'x') {
        name.remove_suffix(1);
        dropDimension();
    }
    return name;
}

/// Whether a digit is a valid vector size.
bool IsSize(char c)
{
    return c >= '1' && c <= '4';
}

/// Whether a word is a texture function with optional precision, size and variant: "tex2D",
/// "h4texCUBEproj".
bool IsTextureRead(std::string_view word)
{
    if (word.starts_with('f') || word.starts_with('h') || word.starts_with('x'))
        word.remove_prefix(1);
    if (!word.empty() && IsSize(word.front()))
        word.remove_prefix(1);
    for (const std::string_view read : {"tex1D", "tex2D", "tex3D", "texCUBE", "texRECT"}) {
        if (word.starts_with(read)) {
            word.remove_prefix(read.size());
            return std::all_of(word.begin(), word.end(),
                               [](char c) { return (c >= 'a' && c <= 'z') || IsDigit(c); });
        }
    }
    return false;
}

/// Whether a word is a semantic, with or without a number: "POSITION", "TEXCOORD3". A parameter
/// with that name would be legal, but not every compiler tells the two apart.
bool IsSemantic(std::string_view word)
{
    while (!word.empty() && IsDigit(word.back()))
        word.remove_suffix(1);
    constexpr std::string_view semantics[] = {"ATTR",     "BCOLOR",  "COLOR", "DEPTH",
                                              "FACE",     "FOG",     "PSIZE", "POSITION",
                                              "TEXCOORD", "TEXUNIT", "WPOS"};
    return std::find(std::begin(semantics), std::end(semantics), word) != std::end(semantics);
}

} // namespace

bool IsReservedWord(std::string_view name)
{
    return CgWords().contains(name) || IsScalarType(WithoutDimensions(name)) ||
           IsTextureRead(name) || IsSemantic(name);
}

} // namespace Mox::Host
