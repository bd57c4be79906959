#include "mox/targets/ProgramCompiler.h"

#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <spirv-tools/optimizer.hpp>
#include <stdexcept>

namespace Mox::Host {

SpirvCompiler::SpirvCompiler()
{
    glslang::InitializeProcess();
}

SpirvCompiler::~SpirvCompiler()
{
    glslang::FinalizeProcess();
}

SpirvWords SpirvCompiler::Compile(const std::string& text, ProgramStage stage) const
{
    constexpr auto rules = static_cast<EShMessages>(EShMsgSpvRules | EShMsgVulkanRules);
    constexpr int version = 450;
    const EShLanguage language = stage == ProgramStage::Vertex ? EShLangVertex : EShLangFragment;
    const char* string = text.data();
    const auto length = static_cast<int>(text.size());
    glslang::TShader shader(language);
    shader.setStringsWithLengths(&string, &length, 1);
    shader.setEnvInput(glslang::EShSourceGlsl, language, glslang::EShClientVulkan, 100);
    shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_0);
    shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_0);
    if (!shader.parse(GetDefaultResources(), version, false, rules))
        throw std::runtime_error(shader.getInfoLog());
    glslang::TProgram program;
    program.addShader(&shader);
    if (!program.link(rules))
        throw std::runtime_error(program.getInfoLog());
    glslang::SpvOptions options;
    options.disableOptimizer = true;
    spv::SpvBuildLogger logger;
    SpirvWords module;
    glslang::GlslangToSpv(*program.getIntermediate(language), module, &logger, &options);
    return module;
}

SpirvWords OptimiseModule(const SpirvWords& words)
{
    std::string failure = "the optimiser failed";
    spvtools::Optimizer optimiser(SPV_ENV_VULKAN_1_0);
    optimiser.SetMessageConsumer(
        [&](spv_message_level_t level, const char*, const spv_position_t&, const char* message) {
            if (level <= SPV_MSG_ERROR)
                failure = message;
        });
    optimiser.RegisterPerformancePasses();
    optimiser.RegisterPass(spvtools::CreateCompactIdsPass());
    spvtools::OptimizerOptions options;
    options.set_run_validator(false); // its running time is quadratic in the number of functions
    SpirvWords optimised;
    if (!optimiser.Run(words.data(), words.size(), &optimised, options))
        throw std::runtime_error(failure);
    return optimised;
}

SpirvMaker ProgramCompiler::MakeSpirv() const
{
    return [compiler = _compiler, optimises = _optimises](const std::string& text,
                                                          ProgramStage stage) {
        SpirvWords words = compiler->Compile(text, stage);
        if (optimises)
            words = OptimiseModule(words);
        return std::string(reinterpret_cast<const char*>(words.data()),
                           words.size() * sizeof(std::uint32_t));
    };
}

} // namespace Mox::Host
