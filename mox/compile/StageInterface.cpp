#include "mox/compile/StageInterface.h"

#include "mox/compile/CrossCompiler.h"

#include <algorithm>
#include <spirv_cross/spirv_cross.hpp>

namespace Mox::Host {

namespace {

UniformMember ReadMember(const spirv_cross::Compiler& compiler, const spirv_cross::SPIRType& block,
                         std::uint32_t index, const ParameterNames& names)
{
    const std::size_t parameter = names.Get(compiler.get_member_name(block.self, index));
    const auto& type = compiler.get_type(block.member_types[index]);
    return {parameter,
            names.GetReflectedName(parameter),
            names.Parameters()[parameter].Type,
            compiler.type_struct_member_offset(block, index),
            static_cast<std::uint32_t>(compiler.get_declared_struct_member_size(block, index)),
            type.array.empty() ? 0 : compiler.type_struct_member_array_stride(block, index),
            type.columns == 1 ? 0 : compiler.type_struct_member_matrix_stride(block, index)};
}

UniformBlock ReadBlock(const spirv_cross::Compiler& compiler, const spirv_cross::Resource& resource,
                       const ParameterNames& names)
{
    const auto& type = compiler.get_type(resource.base_type_id);
    UniformBlock block{resource.name,
                       compiler.get_decoration(resource.id, spv::DecorationBinding),
                       static_cast<std::uint32_t>(compiler.get_declared_struct_size(type)),
                       {}};
    for (std::uint32_t i = 0; i < type.member_types.size(); ++i)
        block.Members.push_back(ReadMember(compiler, type, i, names));
    return block;
}

std::vector<StageVariable>
ReadVariables(const spirv_cross::Compiler& compiler,
              const spirv_cross::SmallVector<spirv_cross::Resource>& resources,
              const ParameterNames& names)
{
    std::vector<StageVariable> variables;
    for (const auto& resource : resources) {
        const std::uint32_t location =
            compiler.get_decoration(resource.id, spv::DecorationLocation);
        if (const auto parameter = names.Find(resource.name)) {
            variables.push_back({parameter, names.GetReflectedName(*parameter),
                                 names.Parameters()[*parameter].Type, location});
        } else {
            const auto& type = compiler.get_type(resource.base_type_id);
            variables.push_back(
                {{},
                 resource.name,
                 {ComponentType::Float, static_cast<std::int32_t>(type.vecsize), 1, 1},
                 location});
        }
    }
    std::sort(variables.begin(), variables.end(),
              [](const auto& a, const auto& b) { return a.Location < b.Location; });
    return variables;
}

} // namespace

StageInterface ReadStageInterface(const SpirvWords& module, const ParameterNames& names)
{
    const spirv_cross::Compiler compiler(module);
    const auto resources = compiler.get_shader_resources();
    StageInterface result;
    for (const auto& resource : resources.uniform_buffers)
        result.Block = ReadBlock(compiler, resource, names);
    for (const auto& resource : resources.sampled_images) {
        const std::size_t parameter = names.Get(resource.name);
        const std::uint32_t binding = compiler.get_decoration(resource.id, spv::DecorationBinding);
        result.Samplers.push_back({parameter, names.GetReflectedName(parameter),
                                   names.Parameters()[parameter].Type, binding,
                                   GetTextureUnit(binding)});
    }
    std::sort(result.Samplers.begin(), result.Samplers.end(),
              [](const auto& a, const auto& b) { return a.Binding < b.Binding; });
    result.Inputs = ReadVariables(compiler, resources.stage_inputs, names);
    result.Outputs = ReadVariables(compiler, resources.stage_outputs, names);
    return result;
}

} // namespace Mox::Host
