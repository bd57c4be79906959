#include "mox/program/CgNames.h"

#include "mox/Text.h"
#include "mox/shader/ShaderNode.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

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
        "log", "log10", "log2", "max", "min", "modf", "mul", "normalize", "pack", "pow", "radians",
        "reflect", "refract", "round", "rsqrt", "saturate", "sign", "sin", "sincos", "sinh",
        "smoothstep", "sqrt", "step", "tan", "tanh", "transpose", "trunc", "unpack",
        "pack_2half", "pack_2ushort", "pack_4byte", "pack_4ubyte", "unpack_2half",
        "unpack_2ushort", "unpack_4byte", "unpack_4ubyte",
    };
    return words;
}
// clang-format on

/// Takes one of the words away from the front of a text.
bool EatOne(std::string_view& text, std::initializer_list<std::string_view> words)
{
    for (const std::string_view word : words) {
        if (text.starts_with(word)) {
            text.remove_prefix(word.size());
            return true;
        }
    }
    return false;
}

bool EatSize(std::string_view& text)
{
    return EatOne(text, {"1", "2", "3", "4"});
}

/// "float3", "half4x4"
bool IsVectorType(std::string_view word)
{
    if (!EatOne(word, {"bool", "double", "fixed", "float", "half", "int", "short", "char", "long",
                       "unsigned"}) ||
        !EatSize(word))
        return false;
    return word.empty() || (EatOne(word, {"x"}) && EatSize(word) && word.empty());
}

/// "tex2Dproj", "h4texCUBE"
bool IsTextureFunction(std::string_view word)
{
    EatOne(word, {"f", "h", "x"});
    EatSize(word);
    if (!EatOne(word, {"tex"}) || !EatOne(word, {"1D", "2D", "3D", "CUBE", "RECT"}))
        return false;
    return std::all_of(word.begin(), word.end(),
                       [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); });
}

} // namespace

bool IsReservedCgWord(const std::string& word)
{
    return ReservedWords().contains(word) || IsVectorType(word) || IsTextureFunction(word);
}

std::string ToSafeCgName(const std::string& text)
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
    if (IsReservedCgWord(name))
        name += '_';
    return name;
}

std::string CgNames::Claim(const std::string& wanted)
{
    const std::string safe = ToSafeCgName(wanted);
    if (_taken.insert(safe).second)
        return safe;
    // Names are never given back, so that all lower numbers stay taken.
    int& number = _lastNumbers.try_emplace(safe, 1).first->second;
    std::string name;
    do {
        name = Materials::Compose(safe, "_", ++number);
    } while (!_taken.insert(name).second);
    return name;
}

} // namespace Mox::Host
