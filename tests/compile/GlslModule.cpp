#include "tests/support/GlslModule.h"

#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <stdexcept>

namespace {

/// Initialises glslang once; its tables are kept until the program ends.
void Initialize()
{
    static const bool isInitialized = glslang::InitializeProcess();
    static_cast<void>(isInitialized);
}

EShMessages RulesOf(GlslangInput input)
{
    switch (input) {
    case GlslangInput::Hlsl:
        return static_cast<EShMessages>(EShMsgReadHlsl | EShMsgVulkanRules | EShMsgSpvRules);
    case GlslangInput::VulkanGlsl:
        return static_cast<EShMessages>(EShMsgVulkanRules | EShMsgSpvRules);
    default:
        return EShMsgDefault;
    }
}

/// @param module receives the result unless it is null
std::string Read(const std::string& text, GlslangInput input, bool isVertex,
                 std::vector<std::uint32_t>* module)
{
    Initialize();
    const EShLanguage stage = isVertex ? EShLangVertex : EShLangFragment;
    const EShMessages rules = RulesOf(input);
    glslang::TShader shader(stage);
    const char* string = text.c_str();
    shader.setStrings(&string, 1);
    shader.setEntryPoint("main");
    shader.setAutoMapLocations(input == GlslangInput::Hlsl);
    shader.setAutoMapBindings(input == GlslangInput::Hlsl);
    // In GLSL, each block has its own descriptor set.
    if (input == GlslangInput::Hlsl)
        shader.setResourceSetBinding({"b0", "0", "0", "b1", "1", "0", "b2", "2", "0"});
    constexpr int version = 100;
    if (!shader.parse(GetDefaultResources(), version, false, rules))
        return shader.getInfoLog();
    glslang::TProgram program;
    program.addShader(&shader);
    if (!program.link(rules) || !program.mapIO())
        return program.getInfoLog();
    if (module)
        glslang::GlslangToSpv(*program.getIntermediate(stage), *module);
    return {};
}

} // namespace

std::string ReadWithGlslang(const std::string& text, GlslangInput input, bool isVertex)
{
    return Read(text, input, isVertex, nullptr);
}

std::vector<std::uint32_t> CompileWithGlslang(const std::string& text, GlslangInput input,
                                              bool isVertex)
{
    std::vector<std::uint32_t> module;
    const std::string log = Read(text, input, isVertex, &module);
    if (!log.empty())
        throw std::runtime_error(log + text);
    return module;
}
