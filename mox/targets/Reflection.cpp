#include "mox/targets/Reflection.h"

#include "mox/document/PropertyText.h"
#include "mox/host/JsonObject.h"
#include "mox/languages/Languages.h"

#include <nlohmann/json.hpp>

namespace Mox::Host {

using Json = nlohmann::ordered_json;

namespace {

/// Creates an object with a name.
Json MakeNamed(const std::string& name)
{
    Json json = MakeJsonObject();
    json["name"] = name;
    return json;
}

/// Describes the name of a parameter and, if the environment reads it, its name there.
Json DescribeName(const std::string& name, const ProgramParameter& parameter)
{
    Json json = MakeNamed(name);
    if (!parameter.IsBinding)
        json["environment"] = parameter.Name;
    return json;
}

/// Lists the stages that read a member.
Json DescribeReaders(bool inVertex, bool inFragment)
{
    Json json = Json::array();
    if (inVertex)
        json.push_back(GetStageName(ProgramStage::Vertex));
    if (inFragment)
        json.push_back(GetStageName(ProgramStage::Fragment));
    return json;
}

Json DescribeMember(const UniformMember& member, const ProgramParameter& parameter)
{
    Json json = DescribeName(member.Name, parameter);
    json["type"] = member.Type.Format();
    json["offset"] = member.Offset;
    json["size"] = member.Size;
    if (member.ArrayStride > 0)
        json["arrayStride"] = member.ArrayStride;
    if (member.MatrixStride > 0)
        json["matrixStride"] = member.MatrixStride;
    json["stages"] = DescribeReaders(member.InVertex, member.InFragment);
    return json;
}

Json DescribeBlocks(const CompiledProgram& program)
{
    Json json = MakeJsonObject();
    for (const UniformBlock& block : program.Blocks) {
        Json& entry = json[GetRateName(block.Rate)] = MakeNamed(block.Name);
        entry["set"] = NumberOf(block.Rate);
        entry["binding"] = blockBinding;
        entry["size"] = block.Size;
        entry["layout"] = "std140";
        entry["stages"] = DescribeReaders(IsReadIn(block, ProgramStage::Vertex),
                                          IsReadIn(block, ProgramStage::Fragment));
        Json& members = entry["members"] = Json::array();
        for (const UniformMember& member : block.Members)
            members.push_back(DescribeMember(member, program.Parameters[member.Parameter]));
    }
    return json;
}

Json DescribeVariables(const std::vector<StageVariable>& variables,
                       const std::vector<ProgramParameter>& parameters)
{
    Json json = Json::array();
    for (const StageVariable& variable : variables) {
        Json& entry = json.emplace_back(
            variable.Parameter ? DescribeName(variable.Name, parameters[*variable.Parameter])
                               : MakeNamed(variable.Name));
        entry["type"] = variable.Type.Format();
        entry["location"] = variable.Location;
    }
    return json;
}

/// Adds only the sampler states that the document sets.
void DescribeSampling(const SamplerState& state, Json& entry)
{
    if (!state.WrapU.empty())
        entry["wrapU"] = state.WrapU;
    if (!state.WrapV.empty())
        entry["wrapV"] = state.WrapV;
    if (!state.Filter.empty())
        entry["filter"] = state.Filter;
    if (const auto anisotropy = ParseInteger(state.Anisotropy))
        entry["anisotropy"] = *anisotropy;
}

Json DescribeStage(const StageInterface& stage, const std::vector<ProgramParameter>& parameters)
{
    Json json = MakeJsonObject();
    Json& samplers = json["samplers"] = Json::array();
    for (const SamplerSlot& sampler : stage.Samplers) {
        Json& entry =
            samplers.emplace_back(DescribeName(sampler.Name, parameters[sampler.Parameter]));
        entry["type"] = sampler.Type.Format();
        entry["set"] = samplerSet;
        entry["binding"] = sampler.Binding;
        entry["unit"] = sampler.Unit;
        DescribeSampling(parameters[sampler.Parameter].Sampler, entry);
    }
    json["inputs"] = DescribeVariables(stage.Inputs, parameters);
    json["outputs"] = DescribeVariables(stage.Outputs, parameters);
    return json;
}

Json DescribePlace(const Languages::PlaceFields& fields)
{
    Json json = MakeJsonObject();
    for (const Languages::PlaceField& field : fields)
        std::visit([&](const auto& value) { json[field.Key] = value; }, field.Value);
    return json;
}

Json DescribeTarget(const TargetProgram& program, const std::vector<UniformBlock>& blocks,
                    const StageInterface& stage)
{
    const Languages::Language& language = GetTargetLanguage(program.Target);
    Json json = MakeJsonObject();
    json["entryPoint"] = program.EntryPoint;
    for (const UniformBlock& block : blocks) {
        if (!IsReadIn(block, program.Stage))
            continue;
        Json& place = json["uniformBlocks"][GetRateName(block.Rate)];
        place = DescribePlace(language.PlaceBlock(block.Name, NumberOf(block.Rate)));
        for (const UniformMember& member : block.Members)
            place["uniforms"][member.Name] = program.Names[member.Parameter];
    }
    for (const SamplerSlot& sampler : stage.Samplers)
        json["samplers"][sampler.Name] = DescribePlace(language.PlaceSampler(
            {program.Names[sampler.Parameter], sampler.Unit, samplerSet, firstSamplerBinding}));
    if (program.Stage == ProgramStage::Vertex)
        for (const StageVariable& input : stage.Inputs)
            json["inputs"][input.Name] =
                DescribePlace(language.PlaceInput(program.Names[*input.Parameter], input.Location));
    return json;
}

} // namespace

std::string FormatReflection(const CompiledProgram& program)
{
    Json json = MakeJsonObject();
    json["version"] = 1;
    json["uniformBlocks"] = DescribeBlocks(program);
    Json& stages = json["stages"] = MakeJsonObject();
    stages[GetStageName(ProgramStage::Vertex)] = DescribeStage(program.Vertex, program.Parameters);
    stages[GetStageName(ProgramStage::Fragment)] =
        DescribeStage(program.Fragment, program.Parameters);
    Json& targets = json["targets"] = MakeJsonObject();
    for (const TargetProgram& target : program.Programs) {
        targets[GetTargetName(target.Target)][GetStageName(target.Stage)] =
            DescribeTarget(target, program.Blocks, program.InterfaceOf(target.Stage));
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace Mox::Host
