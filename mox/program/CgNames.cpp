#include "mox/program/CgNames.h"

#include "mox/Text.h"
#include "mox/shader/ShaderNode.h"

#include <regex>

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
    };
    return words;
}
// clang-format on

} // namespace

bool IsReservedCgWord(const std::string& word)
{
    static const std::regex families(
        "(bool|double|fixed|float|half|int|short|char|long|unsigned)[1-4](x[1-4])?"
        "|[fhx]?[1-4]?tex(1D|2D|3D|CUBE|RECT)[a-z0-9]*"
        "|(un)?pack_(2half|2ushort|4byte|4ubyte)",
        std::regex::optimize);
    return ReservedWords().contains(word) || std::regex_match(word, families);
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
    std::string name = safe;
    for (int number = 2; !_taken.insert(name).second; ++number)
        name = Materials::Compose(safe, "_", number);
    return name;
}

} // namespace Mox::Host
