#include "tests/compile/Recheck.h"

#include "mox/targets/ProgramCompiler.h"
#include "tests/support/GlslModule.h"

#include <cstring>
#include <spirv-tools/libspirv.hpp>

using namespace Mox::Host;

namespace {

GlslangInput InputOf(CompileTarget target)
{
    switch (target) {
    case CompileTarget::Hlsl:
        return GlslangInput::Hlsl;
    case CompileTarget::GlslVulkan:
        return GlslangInput::VulkanGlsl;
    case CompileTarget::Essl:
        return GlslangInput::Essl;
    default:
        return GlslangInput::Glsl;
    }
}

std::string Validate(const std::string& bytes)
{
    SpirvWords words(bytes.size() / sizeof(std::uint32_t));
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
    switch (program.Target) {
    case CompileTarget::Msl: // these two have separate tests
    case CompileTarget::Wgsl:
        return program.Bytes.find(program.EntryPoint + "(") == std::string::npos ? "no entry point"
                                                                                 : "";
    case CompileTarget::Spirv:
        return Validate(program.Bytes);
    default:
        return ReadWithGlslang(program.Bytes, InputOf(program.Target),
                               program.Stage == ProgramStage::Vertex);
    }
}
