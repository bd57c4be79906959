#include "mox/program/ReservedWords.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace Mox::Host {

namespace {

using Words = std::set<std::string, std::less<>>;

/// Reserved words, and types that are followed by their dimensions, such as "float" for "float3"
/// and "float4x4".
struct LanguageWords
{
    Words Reserved;
    Words Vectors;
};

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
const LanguageWords& Cg()
{
    static const LanguageWords language{
        Split(R"(
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
unpack_4ubyte)"),
        Split("bool char double fixed float half int long short unsigned")};
    return language;
}

const LanguageWords& Hlsl()
{
    static const LanguageWords language{
        Split(R"(
AppendStructuredBuffer BlendState Buffer ByteAddressBuffer CompileShader ComputeShader
ConstantBuffer ConsumeStructuredBuffer DepthStencilState DepthStencilView DomainShader
GeometryShader Hullshader InputPatch LineStream NULL OutputPatch PixelShader PointStream
RasterizerState RenderTargetView RWBuffer RWByteAddressBuffer RWStructuredBuffer RWTexture1D
RWTexture1DArray RWTexture2D RWTexture2DArray RWTexture3D SamplerComparisonState SamplerState
StructuredBuffer SubpassInput SubpassInputMS Texture1D Texture1DArray Texture2D Texture2DArray
Texture2DMS Texture2DMSArray Texture3D TextureBuffer TextureCube TextureCubeArray TriangleStream
VertexShader asm asm_fragment auto bool break case catch cbuffer centroid char class column_major
compile compile_fragment const const_cast continue decl default delete discard do double dword
dynamic_cast else enum explicit export extern false float for friend fxgroup globallycoherent goto
groupshared half if in inline inout int interface layout line lineadj linear long matrix
min10float min12int min16float min16int min16uint mutable namespace new nointerpolation
noperspective operator out packoffset pass pixelfragment pixelshader point precise private
protected public register reinterpret_cast return row_major sample sampler sampler1D sampler2D
sampler3D samplerCUBE sampler_state shared short signed sizeof snorm stateblock stateblock_state
static static_cast string struct switch tbuffer technique technique10 technique11 template texture
texture1D texture2D texture3D textureCUBE this throw triangle triangleadj true try typedef
typename uint uint64_t uniform union unorm unsigned using vector vertexfragment vertexshader
virtual void volatile while)"),
        Split("bool double dword float half int min10float min12int min16float min16int min16uint "
              "uint")};
    return language;
}

const LanguageWords& Glsl()
{
    static const LanguageWords language{Split(R"(
active asm atomic_uint attribute bool break buffer case cast centroid class coherent common const
continue default discard do double else enum extern external false filter fixed flat float for
goto half highp if iimage1D iimage1DArray iimage2D iimage2DArray iimage2DMS iimage2DMSArray
iimage2DRect iimage3D iimageBuffer iimageCube iimageCubeArray image1D image1DArray image2D
image2DArray image2DMS image2DMSArray image2DRect image3D imageBuffer imageCube imageCubeArray in
inline inout input int interface invariant isampler1D isampler1DArray isampler2D isampler2DArray
isampler2DMS isampler2DMSArray isampler2DRect isampler3D isamplerBuffer isamplerCube
isamplerCubeArray isubpassInput isubpassInputMS itexture1D itexture1DArray itexture2D
itexture2DArray itexture2DMS itexture2DMSArray itexture2DRect itexture3D itextureBuffer
itextureCube itextureCubeArray layout long lowp main mediump namespace noinline noperspective out
output packed partition patch precise precision public readonly resource restrict return sample
sampler sampler1D sampler1DArray sampler1DArrayShadow sampler1DShadow sampler2D sampler2DArray
sampler2DArrayShadow sampler2DMS sampler2DMSArray sampler2DRect sampler2DRectShadow
sampler2DShadow sampler3D sampler3DRect samplerBuffer samplerCube samplerCubeArray
samplerCubeArrayShadow samplerCubeShadow samplerExternalOES samplerShadow shared short sizeof
smooth static struct subpassInput subpassInputMS subroutine superp switch template texture1D
texture1DArray texture2D texture2DArray texture2DMS texture2DMSArray texture2DRect texture3D
textureBuffer textureCube textureCubeArray this true typedef uimage1D uimage1DArray uimage2D
uimage2DArray uimage2DMS uimage2DMSArray uimage2DRect uimage3D uimageBuffer uimageCube
uimageCubeArray uint uniform union unsigned usampler1D usampler1DArray usampler2D usampler2DArray
usampler2DMS usampler2DMSArray usampler2DRect usampler3D usamplerBuffer usamplerCube
usamplerCubeArray using usubpassInput usubpassInputMS utexture1D utexture1DArray utexture2D
utexture2DArray utexture2DMS utexture2DMSArray utexture2DRect utexture3D utextureBuffer
utextureCube utextureCubeArray varying void volatile while writeonly)"),
                                        Split("bvec dmat dvec fvec hvec ivec mat uvec vec")};
    return language;
}

/// In ESSL, no global name may equal that of a built-in function, whether or not it is called.
const Words& EsslFunctions()
{
    static const Words words = Split(R"(
abs acos acosh all any asin asinh atan atanh ceil clamp cos cosh cross dFdx dFdy degrees
determinant distance dot equal exp exp2 faceforward floatBitsToInt floatBitsToUint floor fract
fwidth greaterThan greaterThanEqual intBitsToFloat inverse inversesqrt isinf isnan length lessThan
lessThanEqual log log2 matrixCompMult max min mix mod modf normalize not notEqual outerProduct
packHalf2x16 packSnorm2x16 packUnorm2x16 pow radians reflect refract round roundEven sign sin sinh
smoothstep sqrt step tan tanh texelFetch texelFetchOffset texture textureGrad textureGradOffset
textureLod textureLodOffset textureOffset textureProj textureProjGrad textureProjGradOffset
textureProjLod textureProjLodOffset textureProjOffset textureSize transpose trunc
uintBitsToFloat unpackHalf2x16 unpackSnorm2x16 unpackUnorm2x16)");
    return words;
}

const LanguageWords& Msl()
{
    static const LanguageWords language{
        Split(R"(
alignas alignof and and_eq array asm atomic_bool atomic_int atomic_uint auto bitand bitor bool
break case catch char char16_t char32_t class compl const const_cast constant constexpr continue
decltype default delete depth2d depth2d_array depth2d_ms depthcube depthcube_array device do double
dynamic_cast else enum explicit export extern false float for fragment friend goto half if
imageblock inline int int16_t int32_t int64_t int8_t kernel long main matrix metal mutable
namespace new noexcept not not_eq nullptr operator or or_eq private protected ptrdiff_t public
ray_data register reinterpret_cast return sampler short signed simd size_t sizeof static
static_assert static_cast struct switch template texture1d texture1d_array texture2d
texture2d_array texture2d_ms texture2d_ms_array texture3d texture_buffer texturecube
texturecube_array this thread thread_local threadgroup threadgroup_imageblock throw true try
typedef typeid typename uchar uint uint16_t uint32_t uint64_t uint8_t ulong union unsigned ushort
using vec vertex virtual void volatile wchar_t while xor xor_eq)"),
        Split(
            "bool char double float half int long packed_char packed_float packed_half packed_int "
            "packed_long packed_short packed_uchar packed_uint packed_ushort short uchar uint "
            "ulong ushort")};
    return language;
}

const LanguageWords& LanguageOf(ProgramLanguage language)
{
    switch (language) {
    case ProgramLanguage::Cg:
        return Cg();
    case ProgramLanguage::Hlsl:
        return Hlsl();
    case ProgramLanguage::Msl:
        return Msl();
    case ProgramLanguage::Glsl:
    case ProgramLanguage::Essl:
        break;
    }
    return Glsl();
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

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
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

bool HasReservedForm(std::string_view name, ProgramLanguage language)
{
    const bool hasDoubleUnderscore = name.find("__") != name.npos;
    switch (language) {
    case ProgramLanguage::Cg:
        return IsTextureRead(name) || IsSemantic(name);
    case ProgramLanguage::Hlsl:
        return false;
    case ProgramLanguage::Msl:
        return hasDoubleUnderscore;
    case ProgramLanguage::Glsl:
    case ProgramLanguage::Essl:
        break;
    }
    return hasDoubleUnderscore || name.starts_with("gl_");
}

} // namespace

bool IsReservedWord(std::string_view name, ProgramLanguage wanted)
{
    const LanguageWords& language = LanguageOf(wanted);
    if (wanted == ProgramLanguage::Essl && EsslFunctions().contains(name))
        return true;
    return HasReservedForm(name, wanted) || language.Reserved.contains(name) ||
           language.Vectors.contains(WithoutDimensions(name));
}

} // namespace Mox::Host
