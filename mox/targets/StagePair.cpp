#include "mox/targets/StagePair.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/languages/BlockStorage.h"
#include "mox/languages/NameTable.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace Mox::Host {

using Languages::StageSlot;
using Materials::Compose;

namespace {

constexpr ProgramStage bothStages[] = {ProgramStage::Vertex, ProgramStage::Fragment};

void SortByLocation(std::vector<StageSlot>& slots)
{
    std::stable_sort(slots.begin(), slots.end(), [](const StageSlot& a, const StageSlot& b) {
        return std::pair(a.IsPosition, a.Location) < std::pair(b.IsPosition, b.Location);
    });
}

/// What the reflection calls parameters. A binding has its own name, and so has a value of the
/// environment unless a binding has it too.
std::vector<std::string> NameInReflection(const std::vector<ProgramParameter>& parameters)
{
    std::set<std::string> taken;
    std::set<std::string> ofBindings;
    for (const ProgramParameter& parameter : parameters) {
        taken.insert(parameter.Name);
        if (parameter.IsBinding)
            ofBindings.insert(parameter.Name);
    }
    std::vector<std::string> names;
    for (const ProgramParameter& parameter : parameters) {
        std::string name = parameter.Name;
        if (!parameter.IsBinding && ofBindings.contains(name)) {
            for (int number = 2; !taken.insert(name).second; ++number)
                name = Compose(parameter.Name, "_", number);
        }
        names.push_back(std::move(name));
    }
    return names;
}

} // namespace

StagePair::StagePair(const CgProgram& program, const ProgramCode& code)
    : _program(program), _code(code), _reflected(NameInReflection(program.Plan.Parameters))
{
    for (std::size_t i = 0; i < program.Plan.Parameters.size(); ++i)
        _parameters.emplace(program.Plan.Parameters[i].CgName, i);
    GiveNames();
    for (const ProgramStage stage : bothStages)
        Describe(stage);
}

/// Names that differ from one another in all that both stages declare.
void StagePair::GiveNames()
{
    static const Languages::Words none;
    Languages::NameTable names(none);
    const auto& parameters = _program.Plan.Parameters;
    _names.resize(parameters.size());
    for (const bool isBinding : {true, false}) {
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            const ProgramParameter& parameter = parameters[i];
            if (parameter.IsBinding == isBinding)
                _names[i] =
                    names.Claim(IsIdentifier(parameter.Name) ? parameter.Name : parameter.CgName);
        }
    }
    for (const ProgramStage stage : bothStages) {
        for (const Cg::StructType& structure : _code.StageOf(stage).Structs)
            names.Claim(structure.Name);
    }
    const Cg::Module& fragment = _code.StageOf(ProgramStage::Fragment);
    for (const Cg::Variable* parameter : fragment.Main()->Parameters) {
        if (parameter->Where == Cg::Storage::In) {
            const int location = LocationOf(*parameter, "TEXCOORD");
            _interpolants.emplace(location, names.Claim(NameOfInterpolant(location)));
        }
    }
}

/// What crosses in a register, with underscores between the names.
std::string StagePair::NameOfInterpolant(int location) const
{
    std::vector<std::pair<std::int32_t, const std::string*>> parts;
    for (const PlannedCrossing& crossing : _program.Plan.Crossings) {
        for (const CrossingPiece& piece : crossing.Pieces) {
            if (piece.Register == location)
                parts.emplace_back(piece.RegisterComponent, &crossing.Name);
        }
    }
    std::sort(parts.begin(), parts.end());
    std::string joined;
    const std::string* last = nullptr;
    for (const auto& [component, name] : parts) {
        if (name == last)
            continue;
        last = name;
        joined += joined.empty() ? "" : "_";
        for (const char c : *name)
            joined += IsIdentifierPart(c) ? c : '_';
    }
    return joined.empty() ? Compose("interpolant", location) : joined;
}

void StagePair::Describe(ProgramStage stage)
{
    const bool isVertex = stage == ProgramStage::Vertex;
    const Cg::Module& module = _code.StageOf(stage);
    Languages::StageProgram& described = _stages[static_cast<std::size_t>(stage)];
    described.Code = &module;
    described.IsVertex = isVertex;
    described.FirstSamplerBinding = firstSamplerBinding;
    for (const Cg::Variable* parameter : module.Main()->Parameters) {
        const bool isOutput = parameter->Where != Cg::Storage::In;
        StageSlot slot{parameter, std::string(parameter->Name), 0, false};
        if (isOutput == isVertex) {
            slot.IsPosition = isVertex && IsPosition(*parameter);
            slot.Location = slot.IsPosition ? 0 : LocationOf(*parameter, "TEXCOORD");
            if (!slot.IsPosition)
                slot.Name = _interpolants.at(slot.Location);
        } else {
            slot.Location = LocationOf(*parameter, isVertex ? "ATTR" : "COLOR");
            if (isVertex)
                slot.Name = _names[ParameterOf(*parameter)];
        }
        (isOutput ? described.Outputs : described.Inputs).push_back(std::move(slot));
    }
    SortByLocation(described.Inputs);
    SortByLocation(described.Outputs);
    DescribeUniforms(stage, described);
}

/// Samplers count in the order of the program's parameters, through both stages.
void StagePair::DescribeUniforms(ProgramStage stage, Languages::StageProgram& described) const
{
    const bool isVertex = stage == ProgramStage::Vertex;
    std::vector<int> units;
    int unit = 0;
    for (const ProgramParameter& parameter : _program.Plan.Parameters)
        units.push_back(parameter.Kind == ParameterKind::Sampler ? unit++ : 0);
    Languages::UniformBlock block{
        isVertex ? "VertexUniforms" : "FragmentUniforms",
        static_cast<int>(isVertex ? vertexBlockBinding : fragmentBlockBinding),
        {}};
    std::uint32_t end = 0;
    for (const Cg::Variable* uniform : described.Code->Uniforms) {
        const std::size_t parameter = ParameterOf(*uniform);
        if (uniform->Of.IsSampler()) {
            described.Samplers.push_back({uniform, _names[parameter], units[parameter], false});
            continue;
        }
        const auto [size, alignment] = Languages::GetStd140(uniform->Of);
        end = (end + alignment - 1) / alignment * alignment;
        block.Members.push_back({uniform, _names[parameter], end});
        end += size;
    }
    SortByLocation(described.Samplers);
    if (!block.Members.empty())
        described.Blocks.push_back(std::move(block));
}

StageInterface StagePair::DescribeInterface(ProgramStage stage) const
{
    const Languages::StageProgram& described = StageOf(stage);
    const bool isVertex = stage == ProgramStage::Vertex;
    StageInterface result;
    for (const Languages::UniformBlock& block : described.Blocks) {
        UniformBlock& declared = result.Block.emplace();
        declared.Name = block.Name;
        declared.Binding = static_cast<std::uint32_t>(block.Binding);
        for (const Languages::BlockMember& member : block.Members) {
            const std::size_t parameter = ParameterOf(*member.Of);
            const Cg::Type& type = member.Of->Of;
            const std::uint32_t size = Languages::GetStd140(type).Size;
            constexpr std::uint32_t vector = 16;
            declared.Members.push_back(
                {parameter, _reflected[parameter], TypeOf(*member.Of), member.Offset, size,
                 type.IsArray() ? size / type.Length : 0, type.Rows > 1 ? vector : 0});
            declared.Size = member.Offset + size;
        }
    }
    for (const StageSlot& sampler : described.Samplers) {
        const std::size_t parameter = ParameterOf(*sampler.Of);
        const auto unit = static_cast<std::uint32_t>(sampler.Location);
        result.Samplers.push_back({parameter, _reflected[parameter], TypeOf(*sampler.Of),
                                   firstSamplerBinding + unit, unit});
    }
    const auto describe = [&](const StageSlot& slot, bool isParameter) {
        const auto location = static_cast<std::uint32_t>(slot.Location);
        if (isParameter) {
            const std::size_t parameter = ParameterOf(*slot.Of);
            return StageVariable{parameter, _reflected[parameter], TypeOf(*slot.Of), location};
        }
        return StageVariable{
            {}, slot.Name, ShaderType(ComponentType::Float, slot.Of->Of.Columns, 1, 1), location};
    };
    for (const StageSlot& input : described.Inputs)
        result.Inputs.push_back(describe(input, isVertex));
    for (const StageSlot& output : described.Outputs) {
        if (!output.IsPosition)
            result.Outputs.push_back(describe(output, false));
    }
    return result;
}

std::vector<std::string> StagePair::NamesOfParameters(
    const std::vector<std::pair<const Cg::Variable*, std::string>>& names) const
{
    std::vector<std::string> result(_names.size());
    for (const auto& [variable, name] : names) {
        const auto parameter = _parameters.find(variable->Name);
        if (parameter != _parameters.end())
            result[parameter->second] = name;
    }
    return result;
}

std::size_t StagePair::ParameterOf(const Cg::Variable& variable) const
{
    const auto parameter = _parameters.find(variable.Name);
    if (parameter == _parameters.end())
        throw std::logic_error(Compose("\"", variable.Name, "\" is no parameter"));
    return parameter->second;
}

const ShaderType& StagePair::TypeOf(const Cg::Variable& variable) const
{
    return _program.Plan.Parameters[ParameterOf(variable)].Type;
}

} // namespace Mox::Host
