#include "mox/program/CgNames.h"

#include "mox/Text.h"
#include "mox/shader/ShaderNode.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>

namespace Mox::Host {

namespace {

// clang-format off
const std::unordered_set<std::string>& ReservedWords()
{
    static const std::unordered_set<std::string> words = {
        // keywords
        "asm", "asm_fragment", "auto", "bool", "break", "case", "cast", "catch", "char", "class",
        "column_major", "compile", "const", "const_cast", "continue", "decl", "default", "delete",
        "discard", "do", "double", "dword", "dynamic_cast", "else", "emit", "enum", "explicit",
        "extern", "false", "fixed", "float", "for", "friend", "get", "goto", "half", "if", "in",
        "inline", "inout", "int", "interface", "long", "main", "matrix", "mutable", "namespace", "new",
        "operator", "out", "packed", "pass", "pixelfragment", "pixelshader", "private", "protected",
        "public", "register", "reinterpret_cast", "return", "row_major", "sampler", "sampler1D",
        "sampler2D", "sampler3D", "samplerCUBE", "samplerRECT", "sampler_state", "shared", "short",
        "signed", "sizeof", "static", "static_cast", "string", "struct", "switch", "technique",
        "template", "texture", "texture1D", "texture2D", "texture3D", "textureCUBE", "textureRECT",
        "this", "throw", "true", "try", "typedef", "typeid", "typename", "uniform", "union",
        "unsigned", "using", "varying", "vector", "vertexfragment", "vertexshader", "virtual", "void",
        "volatile", "while",
        // functions
        "abs", "acos", "all", "any", "asin", "atan", "atan2", "bitCount", "bitfieldExtract",
        "bitfieldInsert", "bitfieldReverse", "ceil", "clamp", "clip", "cos", "cosh", "cross", "ddx",
        "ddy", "degrees", "determinant", "distance", "dot", "exp", "exp2", "faceforward", "findLSB",
        "findMSB", "floatToIntBits", "floatToRawIntBits", "floor", "fmod", "frac", "frexp", "fwidth",
        "intBitsToFloat", "inverse", "isfinite", "isinf", "isnan", "ldexp", "length", "lerp", "lit",
        "log", "log10", "log2", "max", "min", "modf", "mul", "normalize", "pack", "pack_2half",
        "pack_2ushort", "pack_4byte", "pack_4ubyte", "pow", "radians", "reflect", "refract", "round",
        "rsqrt", "saturate", "sign", "sin", "sincos", "sinh", "smoothstep", "sqrt", "step", "tan",
        "tanh", "transpose", "trunc", "unpack", "unpack_2half", "unpack_2ushort", "unpack_4byte",
        "unpack_4ubyte",
    };
    return words;
}
// clang-format on

constexpr std::string_view scalarTypes[] = {"bool", "double", "fixed", "float", "half",
                                            "int",  "short",  "char",  "long",  "unsigned"};

bool IsSize(char c)
{
    return c >= '1' && c <= '4';
}

/// A vector or matrix: "half3", "float4x4".
bool IsNumberedType(std::string_view word)
{
    const std::size_t length = word.size();
    if (length > 3 && IsSize(word[length - 1]) && word[length - 2] == 'x' &&
        IsSize(word[length - 3]))
        word.remove_suffix(2);
    if (word.empty() || !IsSize(word.back()))
        return false;
    word.remove_suffix(1);
    return std::find(std::begin(scalarTypes), std::end(scalarTypes), word) != std::end(scalarTypes);
}

/// A texture read with its precision, width and variant: "tex2D", "h4texCUBEproj".
bool IsTextureRead(std::string_view word)
{
    if (word.starts_with('f') || word.starts_with('h') || word.starts_with('x'))
        word.remove_prefix(1);
    if (!word.empty() && IsSize(word.front()))
        word.remove_prefix(1);
    for (const std::string_view read : {"tex1D", "tex2D", "tex3D", "texCUBE", "texRECT"}) {
        if (word.starts_with(read)) {
            word.remove_prefix(read.size());
            return std::all_of(word.begin(), word.end(), [](char c) {
                return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
            });
        }
    }
    return false;
}

/// A place of a parameter, with or without a number: "POSITION", "TEXCOORD3". A parameter of that
/// name would be legal, but not every compiler tells the two apart.
bool IsSemantic(std::string_view word)
{
    while (!word.empty() && word.back() >= '0' && word.back() <= '9')
        word.remove_suffix(1);
    constexpr std::string_view semantics[] = {"ATTR",     "BCOLOR",  "COLOR", "DEPTH",
                                              "FACE",     "FOG",     "PSIZE", "POSITION",
                                              "TEXCOORD", "TEXUNIT", "WPOS"};
    return std::find(std::begin(semantics), std::end(semantics), word) != std::end(semantics);
}

/// What no Cg name may hold becomes one underscore.
std::string ReplaceBadCharacters(const std::string& text)
{
    std::string name;
    bool isReplacing = false;
    for (const char c : text) {
        const bool isGood = ShaderNode::IsValidCgName({'_', c});
        if (isGood)
            name += c;
        else if (!isReplacing)
            name += '_';
        isReplacing = !isGood;
    }
    if (!ShaderNode::IsValidCgName(name))
        name.insert(0, 1, '_');
    return name;
}

} // namespace

std::size_t FindCgWord(std::string_view text, std::string_view word, std::size_t from)
{
    const auto isWordPart = [](char c) { return ShaderNode::IsValidCgName({'_', c}); };
    std::size_t at = text.find(word, from);
    for (; at != std::string_view::npos; at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        if ((at == 0 || !isWordPart(text[at - 1])) &&
            (end == text.size() || !isWordPart(text[end])))
            break;
    }
    return at;
}

bool IsReservedCgWord(const std::string& word)
{
    return ReservedWords().contains(word) || IsNumberedType(word) || IsTextureRead(word) ||
           IsSemantic(word);
}

std::string ToSafeCgName(const std::string& text)
{
    std::string name = ShaderNode::IsValidCgName(text) ? text : ReplaceBadCharacters(text);
    if (IsReservedCgWord(name))
        name += '_';
    return name;
}

std::string CgNames::Claim(const std::string& wanted)
{
    std::string name = ToSafeCgName(wanted);
    const auto [entry, isNew] = _taken.try_emplace(name, firstNumber);
    if (isNew)
        return name;
    const std::string& safe = entry->first;
    int& number = entry->second;
    do
        name = Materials::Compose(safe, "_", number++);
    while (!_taken.try_emplace(name, firstNumber).second);
    return name;
}

} // namespace Mox::Host
