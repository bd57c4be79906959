#include "mox/compile/CrossCompiler.h"

#include "mox/Text.h"

#include <spirv_cross/spirv_glsl.hpp>
#include <spirv_cross/spirv_hlsl.hpp>
#include <spirv_cross/spirv_msl.hpp>

namespace Mox::Host {

using Materials::Compose;

namespace {

spv::ExecutionModel ModelOf(ProgramStage stage)
{
    return stage == ProgramStage::Vertex ? spv::ExecutionModelVertex : spv::ExecutionModelFragment;
}

void SetCommonOptions(spirv_cross::CompilerGLSL& compiler)
{
    auto options = compiler.get_common_options();
    options.enable_row_major_load_workaround = false;
    compiler.set_common_options(options);
}

std::string CompileGlsl(const SpirvWords& module, CompileTarget target)
{
    spirv_cross::CompilerGLSL compiler(module);
    SetCommonOptions(compiler);
    auto options = compiler.get_common_options();
    options.vulkan_semantics = target == CompileTarget::GlslVulkan;
    if (target == CompileTarget::Essl) {
        options.es = true;
        options.version = 300;
        options.fragment.default_float_precision = spirv_cross::CompilerGLSL::Options::Highp;
    }
    compiler.set_common_options(options);
    if (target == CompileTarget::Glsl) {
        for (const auto& sampler : compiler.get_shader_resources().sampled_images) {
            const std::uint32_t binding =
                compiler.get_decoration(sampler.id, spv::DecorationBinding);
            compiler.set_decoration(sampler.id, spv::DecorationBinding, GetTextureUnit(binding));
        }
    }
    return compiler.compile();
}

std::string CompileHlsl(const SpirvWords& module, ProgramStage stage)
{
    spirv_cross::CompilerHLSL compiler(module);
    SetCommonOptions(compiler);
    auto options = compiler.get_hlsl_options();
    options.shader_model = 50;
    compiler.set_hlsl_options(options);
    const auto resources = compiler.get_shader_resources();
    for (const auto& sampler : resources.sampled_images) {
        spirv_cross::HLSLResourceBinding place;
        place.stage = ModelOf(stage);
        place.desc_set = descriptorSet;
        place.binding = compiler.get_decoration(sampler.id, spv::DecorationBinding);
        place.srv.register_binding = GetTextureUnit(place.binding);
        place.sampler.register_binding = GetTextureUnit(place.binding);
        compiler.add_hlsl_resource_binding(place);
    }
    if (stage == ProgramStage::Vertex) {
        for (const auto& input : resources.stage_inputs) {
            const std::uint32_t location =
                compiler.get_decoration(input.id, spv::DecorationLocation);
            compiler.add_vertex_attribute_remap({location, Compose("ATTR", location)});
        }
    }
    return compiler.compile();
}

std::string CompileMsl(const SpirvWords& module, ProgramStage stage)
{
    spirv_cross::CompilerMSL compiler(module);
    SetCommonOptions(compiler);
    auto options = compiler.get_msl_options();
    options.set_msl_version(2);
    compiler.set_msl_options(options);
    compiler.set_combined_sampler_suffix("Sampler");
    const auto resources = compiler.get_shader_resources();
    const auto place = [&](std::uint32_t id, std::uint32_t buffer, std::uint32_t unit) {
        spirv_cross::MSLResourceBinding binding;
        binding.stage = ModelOf(stage);
        binding.desc_set = descriptorSet;
        binding.binding = compiler.get_decoration(id, spv::DecorationBinding);
        binding.msl_buffer = buffer;
        binding.msl_texture = unit;
        binding.msl_sampler = unit;
        compiler.add_msl_resource_binding(binding);
    };
    for (const auto& block : resources.uniform_buffers)
        place(block.id, GetBlockBinding(stage), 0);
    for (const auto& sampler : resources.sampled_images)
        place(sampler.id, 0,
              GetTextureUnit(compiler.get_decoration(sampler.id, spv::DecorationBinding)));
    compiler.rename_entry_point("main", std::string(GetEntryPoint(CompileTarget::Msl, stage)),
                                ModelOf(stage));
    return compiler.compile();
}

} // namespace

std::string_view GetEntryPoint(CompileTarget target, ProgramStage stage)
{
    if (target != CompileTarget::Msl)
        return "main";
    return stage == ProgramStage::Vertex ? "vertexMain" : "fragmentMain";
}

std::string CrossCompile(const SpirvWords& module, CompileTarget target, ProgramStage stage)
{
    switch (target) {
    case CompileTarget::Hlsl:
        return CompileHlsl(module, stage);
    case CompileTarget::Msl:
        return CompileMsl(module, stage);
    default:
        return CompileGlsl(module, target);
    }
}

} // namespace Mox::Host
