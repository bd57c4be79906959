#include "mox/targets/StagePair.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/languages/NameTable.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace Mox::Host {

using Languages::StageSlot;
using Materials::Compose;

namespace {

void SortByLocation(std::vector<StageSlot>& slots)
{
    std::stable_sort(slots.begin(), slots.end(), [](const StageSlot& a, const StageSlot& b) {
        return std::pair(a.IsPosition, a.Location) < std::pair(b.IsPosition, b.Location);
    });
}

/// Returns the names of the parameters in the reflection. A binding keeps its name, and so does an
/// environment value unless a binding has the same name.
std::vector<std::string> NameInReflection(const std::vector<ProgramParameter>& parameters)
{
    std::unordered_map<std::string, int> taken;
    std::set<std::string> ofBindings;
    for (const ProgramParameter& parameter : parameters) {
        taken.try_emplace(parameter.Name, 1);
        if (parameter.IsBinding)
            ofBindings.insert(parameter.Name);
    }
    std::vector<std::string> names;
    for (const ProgramParameter& parameter : parameters) {
        const std::string& name = parameter.Name;
        const bool isAmbiguous = !parameter.IsBinding && ofBindings.contains(name);
        names.push_back(isAmbiguous ? MakeUnique(taken, name) : name);
    }
    return names;
}

} // namespace

StagePair::StagePair(const CgProgram& program, const ProgramCode& code)
    : _program(program), _code(code), _parameters(CompleteParameters(program.Plan)),
      _reflected(NameInReflection(_parameters))
{
    const UniformBlocks::BothUniforms uniforms = FindParameters();
    GiveNames();
    _blocks.emplace(program.Plan, _parameters, _names, uniforms);
    _byVariable.insert(_blocks->Unread().begin(), _blocks->Unread().end());
    for (const ProgramStage stage : bothStages)
        Describe(stage);
}

/// @returns the uniforms among the parameters
UniformBlocks::BothUniforms StagePair::FindParameters()
{
    UniformBlocks::BothUniforms uniforms;
    std::unordered_map<std::string_view, std::size_t> byName;
    for (std::size_t i = 0; i < _program.Plan.Parameters.size(); ++i)
        byName.emplace(_parameters[i].CgName, i);
    const auto find = [&](const Cg::Variable* variable) {
        const auto parameter = byName.find(variable->Name);
        if (parameter == byName.end())
            throw std::logic_error(Compose("\"", variable->Name, "\" is not a parameter"));
        _byVariable.emplace(variable, parameter->second);
        return parameter->second;
    };
    for (const ProgramStage stage : bothStages) {
        const Cg::Module& module = _code.StageOf(stage);
        for (const Cg::Variable* uniform : module.Uniforms)
            uniforms[static_cast<std::size_t>(stage)].emplace(find(uniform), uniform);
        for (const Cg::Variable* parameter : module.Main()->Parameters) {
            if (stage == ProgramStage::Vertex && parameter->Where == Cg::Storage::In)
                find(parameter);
        }
    }
    return uniforms;
}

/// Assigns names that are unique among the declarations of both stages.
void StagePair::GiveNames()
{
    static const Languages::Words none;
    Languages::NameTable names(none);
    _names.resize(_parameters.size());
    for (const bool isBinding : {true, false}) {
        for (std::size_t i = 0; i < _parameters.size(); ++i) {
            const ProgramParameter& parameter = _parameters[i];
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

/// Joins the names of the values in an interpolant register with underscores.
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
    described.SamplerSet = samplerSet;
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
    described.Blocks = _blocks->DeclaredIn(stage);
    DescribeSamplers(described);
}

/// Samplers are numbered across both stages in the order of the program's parameters.
void StagePair::DescribeSamplers(Languages::StageProgram& described) const
{
    std::vector<int> units;
    int unit = 0;
    for (const ProgramParameter& parameter : _parameters)
        units.push_back(parameter.Kind == ParameterKind::Sampler ? unit++ : 0);
    for (const Cg::Variable* uniform : described.Code->Uniforms) {
        const std::size_t parameter = ParameterOf(*uniform);
        if (uniform->Of.IsSampler())
            described.Samplers.push_back({uniform, _names[parameter], units[parameter], false});
    }
    SortByLocation(described.Samplers);
}

StageInterface StagePair::DescribeInterface(ProgramStage stage) const
{
    const Languages::StageProgram& described = StageOf(stage);
    const bool isVertex = stage == ProgramStage::Vertex;
    StageInterface result;
    for (const StageSlot& sampler : described.Samplers) {
        const std::size_t parameter = ParameterOf(*sampler.Of);
        const auto unit = static_cast<std::uint32_t>(sampler.Location);
        result.Samplers.push_back({parameter, _reflected[parameter], _parameters[parameter].Type,
                                   firstSamplerBinding + unit, unit});
    }
    const auto describe = [&](const StageSlot& slot, bool isParameter) {
        const auto location = static_cast<std::uint32_t>(slot.Location);
        if (isParameter) {
            const std::size_t parameter = ParameterOf(*slot.Of);
            return StageVariable{parameter, _reflected[parameter], _parameters[parameter].Type,
                                 location};
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
        const auto parameter = _byVariable.find(variable);
        if (parameter != _byVariable.end())
            result[parameter->second] = name;
    }
    return result;
}

std::size_t StagePair::ParameterOf(const Cg::Variable& variable) const
{
    return _byVariable.at(&variable);
}

} // namespace Mox::Host
