#include "mox/compile/ReservedWords.h"

#include <set>
#include <sstream>
#include <string>

namespace Mox::Host {

namespace {

using Words = std::set<std::string, std::less<>>;

/// Words, and types that are followed by their dimensions, such as "float" for "float3" and
/// "float4x4".
struct Language
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

const Language& Hlsl()
{
    static const Language language{
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

const Language& Glsl()
{
    static const Language language{Split(R"(
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

/// ESSL lets no global thing have the name of one of its functions, called or not.
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

const Language& Msl()
{
    static const Language language{
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

const Language& LanguageOf(CompileTarget target)
{
    switch (target) {
    case CompileTarget::Hlsl:
        return Hlsl();
    case CompileTarget::Msl:
        return Msl();
    default:
        return Glsl();
    }
}

/// "float4x4" and "float3" as "float".
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

bool HasReservedForm(std::string_view name, CompileTarget target)
{
    const bool hasDoubleUnderscore = name.find("__") != name.npos;
    switch (target) {
    case CompileTarget::Hlsl:
        return false;
    case CompileTarget::Msl:
        return hasDoubleUnderscore;
    default:
        return hasDoubleUnderscore || name.starts_with("gl_");
    }
}

} // namespace

bool IsReservedName(std::string_view name, CompileTarget target)
{
    const Language& language = LanguageOf(target);
    if (target == CompileTarget::Essl && EsslFunctions().contains(name))
        return true;
    return HasReservedForm(name, target) || language.Reserved.contains(name) ||
           language.Vectors.contains(WithoutDimensions(name));
}

} // namespace Mox::Host
