#include "mox/program/RegisterRules.h"

#include "mox/Text.h"

#include <algorithm>

namespace Mox::Host {

namespace {

using Materials::Compose;

std::string DescribeOrigin(const std::string& node)
{
    return node.empty() ? "the environment" : Compose("node \"", node, "\"");
}

std::int64_t ConstantRegisters(const ShaderType& type)
{
    return std::int64_t(std::max(type.Rows, 1)) * std::max(type.ArrayLength, 1);
}

/// The kinds of registers that a parameter occupies.
std::vector<ShaderRegisterType> ClassesOf(const ProgramParameter& parameter)
{
    std::vector<ShaderRegisterType> classes;
    switch (parameter.Kind) {
    case ParameterKind::VertexStream:
        return {ShaderRegisterType::VertexAttribute};
    case ParameterKind::Sampler:
        if (parameter.InVertex)
            classes.push_back(ShaderRegisterType::VertexTextureUnit);
        if (parameter.InFragment)
            classes.push_back(ShaderRegisterType::FragmentTextureUnit);
        break;
    case ParameterKind::Uniform:
        if (parameter.InVertex)
            classes.push_back(ShaderRegisterType::VertexConstant);
        break;
    }
    return classes;
}

} // namespace

void RegisterRules::Enter(const ProgramNode& node)
{
    const ShaderNode& shader = *node.Shader;
    Take(shader.Register,
         {DescribeOrigin(node.Origin->Node), shader.Type, !shader.Register.IsWritable()},
         PlaceOf(*node.Origin));
}

void RegisterRules::Take(const ShaderRegister& place, const Owner& owner, const Place& where)
{
    const std::int32_t count = GetRegisterInfo(place.Type).Count;
    if (place.Index < 0 || (place.Index >= count && count > 1)) {
        _problems.Fail("register-conflict", where,
                       Compose("register ", place.FormatRegister(),
                               " does not exist; there are only ", count, " of this kind"));
        return;
    }
    // For a kind with only one register the index has no meaning.
    const auto [entry, isNew] =
        _owners.emplace(Key(place.Type, count > 1 ? place.Index : 0), owner);
    const Owner& other = entry->second;
    if (isNew || (other.IsReadable && owner.IsReadable && other.Type == owner.Type))
        return;
    _problems.Fail("register-conflict", where,
                   Compose("two values use register ", place.FormatRegister(), ": ",
                           owner.Type.Format(), " of ", owner.Text, " and ", other.Type.Format(),
                           " of ", other.Text));
}

void RegisterRules::GiveRegister(ProgramParameter& parameter)
{
    const std::vector<ShaderRegisterType> classes = ClassesOf(parameter);
    const Owner owner{
        Compose("parameter \"", parameter.Name, "\" of ", DescribeOrigin(parameter.Node)),
        parameter.Type, false};
    const Place where({}, 0, parameter.Node);
    if (parameter.Register.Type != ShaderRegisterType::RegisterUnknown) {
        Take(parameter.Register, owner, where);
        for (const ShaderRegisterType type : classes) {
            if (type != parameter.Register.Type && parameter.Kind != ParameterKind::Uniform)
                Take({type, parameter.Register.Index}, owner, where);
        }
        return;
    }
    if (parameter.Kind == ParameterKind::Uniform)
        return;
    std::int32_t index = 0;
    for (const ShaderRegisterType type : classes)
        index = std::max(index, FindFree(type));
    while (std::any_of(classes.begin(), classes.end(),
                       [&](ShaderRegisterType type) { return _owners.contains(Key(type, index)); }))
        ++index;
    for (const ShaderRegisterType type : classes)
        _owners.emplace(Key(type, index), owner);
    parameter.Register = {classes.back(), index};
}

/// Returns the first free register of a kind.
std::int32_t RegisterRules::FindFree(ShaderRegisterType type)
{
    std::int32_t& index = _firstFree[type];
    while (_owners.contains(Key(type, index)))
        ++index;
    return index;
}

void RegisterRules::CheckCounts(const std::vector<ProgramParameter>& parameters) const
{
    struct Class
    {
        ShaderRegisterType Type;
        const char* What;
    };
    constexpr Class classes[] = {
        {ShaderRegisterType::VertexAttribute, "vertex streams"},
        {ShaderRegisterType::VertexTextureUnit, "textures of the vertex program"},
        {ShaderRegisterType::FragmentTextureUnit, "textures of the fragment program"},
        {ShaderRegisterType::VertexConstant, "constants of the vertex program"},
    };
    for (const auto& [type, what] : classes) {
        const auto takes = [&, kind = type](const ProgramParameter& parameter) {
            const std::vector<ShaderRegisterType> taken = ClassesOf(parameter);
            return std::find(taken.begin(), taken.end(), kind) != taken.end();
        };
        std::int64_t count = 0;
        for (const ProgramParameter& parameter : parameters) {
            if (type == ShaderRegisterType::VertexConstant)
                count += takes(parameter) ? ConstantRegisters(parameter.Type) : 0;
            else if (takes(parameter))
                count = std::max<std::int64_t>(count, parameter.Register.Index + 1);
        }
        const std::int32_t limit = GetRegisterInfo(type).Count;
        if (count <= limit)
            continue;
        std::string users;
        for (const ProgramParameter& parameter : parameters) {
            if (takes(parameter))
                users += Compose(users.empty() ? "" : ", ", "\"", parameter.Name, "\"");
        }
        _problems.Fail("too-many-registers", {},
                       Compose(what, " need ", count, " registers, but only ", limit,
                               " are available: ", users));
    }
}

} // namespace Mox::Host
