#include "mox/targets/UniformBlocks.h"

#include "mox/Text.h"
#include "mox/languages/BlockStorage.h"

#include <algorithm>
#include <stdexcept>

namespace Mox::Host {

using Materials::Compose;

namespace {

bool IsOfEnvironment(const ProgramParameter& parameter)
{
    return parameter.Kind == ParameterKind::Uniform && !parameter.IsBinding;
}

/// @returns the number of parameters if the name is not found
std::size_t FindOfEnvironment(const std::vector<ProgramParameter>& parameters,
                              const std::string& name)
{
    const auto found =
        std::find_if(parameters.begin(), parameters.end(), [&](const auto& parameter) {
            return IsOfEnvironment(parameter) && parameter.Name == name;
        });
    return static_cast<std::size_t>(found - parameters.begin());
}

Cg::Type CgTypeOf(const ShaderType& type)
{
    ShaderType element = type;
    element.ArrayLength = 1;
    Cg::Type result;
    if (!Cg::FindBuiltInType(element.Format(), result))
        throw std::logic_error(Compose(element.Format(), " is not a Cg type"));
    if (type.ArrayLength > 1)
        result.Length = static_cast<std::uint16_t>(type.ArrayLength);
    return result;
}

Languages::UniformBlock MakeBlock(UniformRate rate)
{
    const int number = static_cast<int>(NumberOf(rate));
    switch (rate) {
    case UniformRate::Frame:
        return {"FrameUniforms", "moxFrame", number, {}};
    case UniformRate::Material:
        return {"MaterialUniforms", "moxMaterial", number, {}};
    case UniformRate::Object:
        return {"ObjectUniforms", "moxObject", number, {}};
    }
    return {};
}

} // namespace

std::vector<ProgramParameter> CompleteParameters(const ProgramPlan& plan)
{
    std::vector<ProgramParameter> parameters = plan.Parameters;
    for (const EnvironmentUniform& uniform : plan.EnvironmentUniforms) {
        if (FindOfEnvironment(parameters, uniform.Name) == parameters.size())
            parameters.push_back(
                {ParameterKind::Uniform, uniform.Name, {}, uniform.Type, {}, false, false, false});
    }
    return parameters;
}

UniformBlocks::UniformBlocks(const ProgramPlan& plan,
                             const std::vector<ProgramParameter>& parameters,
                             const std::vector<std::string>& names, BothUniforms uniforms)
    : _parameters(parameters), _uniforms(std::move(uniforms))
{
    std::size_t ofEnvironment = 0;
    for (const UniformRate rate : uniformRates) {
        _blocks.push_back({rate, MembersOf(rate, plan), MakeBlock(rate)});
        Block& block = _blocks.back();
        for (const std::size_t parameter : block.Parameters) {
            Cg::Variable& variable = _variables.emplace_back();
            variable.Of = CgTypeOf(parameters[parameter].Type);
            variable.Where = Cg::Storage::Uniform;
            _unread.emplace(&variable, parameter);
            Languages::AppendMember(block.Layout, variable, names[parameter]);
        }
        ofEnvironment += rate == UniformRate::Material ? 0 : block.Parameters.size();
    }
    if (static_cast<std::ptrdiff_t>(ofEnvironment) !=
        std::count_if(parameters.begin(), parameters.end(), IsOfEnvironment))
        throw std::logic_error("a stage reads a uniform that the environment does not declare");
}

std::vector<std::size_t> UniformBlocks::MembersOf(UniformRate rate, const ProgramPlan& plan) const
{
    std::vector<std::size_t> members;
    if (rate == UniformRate::Material) {
        for (std::size_t i = 0; i < _parameters.size(); ++i) {
            if (_parameters[i].Kind == ParameterKind::Uniform && _parameters[i].IsBinding &&
                (Reads(ProgramStage::Vertex, i) || Reads(ProgramStage::Fragment, i)))
                members.push_back(i);
        }
        return members;
    }
    for (const EnvironmentUniform& uniform : plan.EnvironmentUniforms) {
        if (uniform.Rate == rate)
            members.push_back(FindOfEnvironment(_parameters, uniform.Name));
    }
    return members;
}

bool UniformBlocks::Reads(ProgramStage stage, std::size_t parameter) const
{
    return _uniforms[static_cast<std::size_t>(stage)].contains(parameter);
}

std::vector<Languages::UniformBlock> UniformBlocks::DeclaredIn(ProgramStage stage) const
{
    const StageUniforms& uniforms = _uniforms[static_cast<std::size_t>(stage)];
    std::vector<Languages::UniformBlock> declared;
    for (const Block& block : _blocks) {
        bool isRead = false;
        Languages::UniformBlock layout = block.Layout;
        for (std::size_t i = 0; i < block.Parameters.size(); ++i) {
            if (const auto read = uniforms.find(block.Parameters[i]); read != uniforms.end()) {
                layout.Members[i].Of = read->second;
                isRead = true;
            }
        }
        if (isRead)
            declared.push_back(std::move(layout));
    }
    return declared;
}

std::vector<UniformBlock> UniformBlocks::Describe(const std::vector<std::string>& names) const
{
    std::vector<UniformBlock> blocks;
    for (const Block& block : _blocks) {
        UniformBlock described{block.Rate, block.Layout.Name, Languages::SizeOf(block.Layout), {}};
        for (std::size_t i = 0; i < block.Parameters.size(); ++i) {
            const std::size_t parameter = block.Parameters[i];
            const Languages::BlockMember& member = block.Layout.Members[i];
            const Languages::Std140 storage = Languages::GetStd140(member.Of->Of);
            described.Members.push_back(
                {parameter, names[parameter], _parameters[parameter].Type, member.Offset,
                 storage.Size, storage.ArrayStride, storage.MatrixStride,
                 Reads(ProgramStage::Vertex, parameter), Reads(ProgramStage::Fragment, parameter)});
        }
        if (std::any_of(described.Members.begin(), described.Members.end(),
                        [](const UniformMember& member) { return member.IsRead(); }))
            blocks.push_back(std::move(described));
    }
    return blocks;
}

} // namespace Mox::Host
