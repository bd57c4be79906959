#include "mox/cg/Intrinsics.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace Mox::Cg {

namespace {

/// In the order of Builtin.
constexpr Intrinsic table[] = {
    {"abs", Builtin::Abs, "n", 'n'},
    {"acos", Builtin::Acos, "g", 'g'},
    {"all", Builtin::All, "b", 'B'},
    {"any", Builtin::Any, "b", 'B'},
    {"asin", Builtin::Asin, "g", 'g'},
    {"atan", Builtin::Atan, "g", 'g'},
    {"atan2", Builtin::Atan2, "gg", 'g'},
    {"ceil", Builtin::Ceil, "g", 'g'},
    {"clamp", Builtin::Clamp, "nnn", 'n'},
    {"clip", Builtin::Clip, "g", '0'},
    {"cos", Builtin::Cos, "g", 'g'},
    {"cosh", Builtin::Cosh, "g", 'g'},
    {"cross", Builtin::Cross, "vv", 'v'},
    {"ddx", Builtin::Ddx, "g", 'g'},
    {"ddy", Builtin::Ddy, "g", 'g'},
    {"degrees", Builtin::Degrees, "g", 'g'},
    {"determinant", Builtin::Determinant, "m", 's'},
    {"distance", Builtin::Distance, "gg", 's'},
    {"dot", Builtin::Dot, "gg", 's'},
    {"exp", Builtin::Exp, "g", 'g'},
    {"exp2", Builtin::Exp2, "g", 'g'},
    {"faceforward", Builtin::Faceforward, "ggg", 'g'},
    {"floor", Builtin::Floor, "g", 'g'},
    {"fmod", Builtin::Fmod, "gg", 'g'},
    {"frac", Builtin::Frac, "g", 'g'},
    {"fwidth", Builtin::Fwidth, "g", 'g'},
    {"isfinite", Builtin::IsFinite, "g", 'c'},
    {"isinf", Builtin::IsInf, "g", 'c'},
    {"isnan", Builtin::IsNan, "g", 'c'},
    {"ldexp", Builtin::Ldexp, "gg", 'g'},
    {"length", Builtin::Length, "g", 's'},
    {"lerp", Builtin::Lerp, "ggg", 'g'},
    {"lit", Builtin::Lit, "sss", '4'},
    {"log", Builtin::Log, "g", 'g'},
    {"log10", Builtin::Log10, "g", 'g'},
    {"log2", Builtin::Log2, "g", 'g'},
    {"max", Builtin::Max, "nn", 'n'},
    {"min", Builtin::Min, "nn", 'n'},
    {"modf", Builtin::Modf, "go", 'g'},
    {"mul", Builtin::Mul, "", '0'},
    {"normalize", Builtin::Normalize, "g", 'g'},
    {"pow", Builtin::Pow, "gg", 'g'},
    {"radians", Builtin::Radians, "g", 'g'},
    {"reflect", Builtin::Reflect, "gg", 'g'},
    {"refract", Builtin::Refract, "ggs", 'g'},
    {"round", Builtin::Round, "g", 'g'},
    {"rsqrt", Builtin::Rsqrt, "g", 'g'},
    {"saturate", Builtin::Saturate, "g", 'g'},
    {"sign", Builtin::Sign, "n", 'n'},
    {"sin", Builtin::Sin, "g", 'g'},
    {"sincos", Builtin::Sincos, "goo", '0'},
    {"sinh", Builtin::Sinh, "g", 'g'},
    {"smoothstep", Builtin::Smoothstep, "ggg", 'g'},
    {"sqrt", Builtin::Sqrt, "g", 'g'},
    {"step", Builtin::Step, "gg", 'g'},
    {"tan", Builtin::Tan, "g", 'g'},
    {"tanh", Builtin::Tanh, "g", 'g'},
    {"transpose", Builtin::Transpose, "x", 't'},
    {"trunc", Builtin::Trunc, "g", 'g'},
};

/// In the order of Builtin, after those of the table above.
constexpr Intrinsic reads[] = {
    {"read", Builtin::Read, "", '4'},
    {"read projected", Builtin::ReadProjected, "", '4'},
    {"read biased", Builtin::ReadBiased, "", '4'},
    {"read at level", Builtin::ReadAtLevel, "", '4'},
    {"read gradient", Builtin::ReadGradient, "", '4'},
};

static_assert(std::size(table) == static_cast<std::size_t>(Builtin::Read));

struct SamplerWord
{
    std::string_view Word;
    Element Sampler;
    int Coordinates;
};

constexpr SamplerWord samplers[] = {
    {"tex1D", Element::Sampler1D, 1},     {"tex2D", Element::Sampler2D, 2},
    {"tex3D", Element::Sampler3D, 3},     {"texCUBE", Element::SamplerCube, 3},
    {"texRECT", Element::SamplerRect, 2},
};

struct VariantWord
{
    std::string_view Word;
    Builtin Id;
};

constexpr VariantWord variants[] = {
    {"", Builtin::Read},
    {"proj", Builtin::ReadProjected},
    {"bias", Builtin::ReadBiased},
    {"lod", Builtin::ReadAtLevel},
};

} // namespace

std::span<const Intrinsic> Intrinsics()
{
    return table;
}

const Intrinsic& GetIntrinsic(Builtin id)
{
    const auto index = static_cast<std::size_t>(id);
    return id < Builtin::Read ? table[index] : reads[index - std::size(table)];
}

const Intrinsic* FindIntrinsic(std::string_view name)
{
    static const auto byName = [] {
        std::unordered_map<std::string_view, const Intrinsic*> map;
        for (const Intrinsic& intrinsic : table)
            map.emplace(intrinsic.Name, &intrinsic);
        return map;
    }();
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

std::optional<TextureRead> FindTextureRead(std::string_view name)
{
    constexpr int allComponents = 4;
    TextureRead read{Element::Float, allComponents, Element::Void, 0, nullptr};
    if (!name.starts_with("tex")) {
        if (name.size() < 2 || name[1] < '1' || name[1] > '4')
            return std::nullopt;
        switch (name[0]) {
        case 'f':
            break;
        case 'h':
            read.Result = Element::Half;
            break;
        case 'x':
            read.Result = Element::Fixed;
            break;
        default:
            return std::nullopt;
        }
        read.Components = name[1] - '0';
        name.remove_prefix(2);
    }
    for (const SamplerWord& sampler : samplers) {
        if (!name.starts_with(sampler.Word))
            continue;
        name.remove_prefix(sampler.Word.size());
        const auto* variant = std::find_if(std::begin(variants), std::end(variants),
                                           [&](const auto& v) { return v.Word == name; });
        if (variant == std::end(variants))
            return std::nullopt;
        read.Sampler = sampler.Sampler;
        read.Coordinates = sampler.Coordinates;
        read.As = &GetIntrinsic(variant->Id);
        return read;
    }
    return std::nullopt;
}

} // namespace Mox::Cg
