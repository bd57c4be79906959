#include "tests/compile/Recheck.h"

#include <cstring>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <spirv-tools/libspirv.hpp>

using namespace Mox::Host;

namespace {

std::string ReadWithGlslang(const TargetProgram& program)
{
    const bool isHlsl = program.Target == CompileTarget::Hlsl;
    const bool isVulkan = program.Target == CompileTarget::GlslVulkan;
    const EShLanguage stage =
        program.Stage == ProgramStage::Vertex ? EShLangVertex : EShLangFragment;
    const auto rules = static_cast<EShMessages>(isHlsl     ? EShMsgReadHlsl
                                                : isVulkan ? EShMsgVulkanRules | EShMsgSpvRules
                                                           : EShMsgDefault);
    glslang::TShader shader(stage);
    const char* text = program.Bytes.c_str();
    shader.setStrings(&text, 1);
    shader.setEntryPoint(program.EntryPoint.c_str());
    const bool isRead = shader.parse(GetDefaultResources(), 100, false, rules);
    glslang::TProgram linked;
    linked.addShader(&shader);
    if (isRead && linked.link(rules))
        return {};
    return std::string(shader.getInfoLog()) + linked.getInfoLog();
}

std::string Validate(const std::string& bytes)
{
    SpirvWords words(bytes.size() / 4);
    std::memcpy(words.data(), bytes.data(), bytes.size());
    std::string log;
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_0);
    tools.SetMessageConsumer([&](spv_message_level_t, const char*, const spv_position_t&,
                                 const char* message) { log += message; });
    return tools.Validate(words) ? "" : "not valid: " + log;
}

} // namespace

std::string Recheck(const TargetProgram& program)
{
    if (program.Bytes.find("MoxParameter") != std::string::npos)
        return "an alias is left";
    switch (program.Target) {
    case CompileTarget::Msl:
        return program.Bytes.find(program.EntryPoint + "(") == std::string::npos ? "no entry point"
                                                                                 : "";
    case CompileTarget::Spirv:
        return Validate(program.Bytes);
    default:
        return ReadWithGlslang(program);
    }
}
