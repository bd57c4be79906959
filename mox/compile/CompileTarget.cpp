#include "mox/compile/CompileTarget.h"

#include <algorithm>

namespace Mox::Host {

std::string_view GetStageName(ProgramStage stage)
{
    return stage == ProgramStage::Vertex ? "vertex" : "fragment";
}

const std::vector<CompileTarget>& AllCompileTargets()
{
    static const std::vector<CompileTarget> targets{
        CompileTarget::Hlsl, CompileTarget::Glsl, CompileTarget::GlslVulkan,
        CompileTarget::Essl, CompileTarget::Msl,  CompileTarget::Spirv};
    return targets;
}

std::string_view GetTargetName(CompileTarget target)
{
    switch (target) {
    case CompileTarget::Hlsl:
        return "hlsl";
    case CompileTarget::Glsl:
        return "glsl";
    case CompileTarget::GlslVulkan:
        return "glsl-vulkan";
    case CompileTarget::Essl:
        return "essl";
    case CompileTarget::Msl:
        return "msl";
    case CompileTarget::Spirv:
        return "spirv";
    }
    return {};
}

std::optional<CompileTarget> FindTarget(std::string_view name)
{
    const auto& targets = AllCompileTargets();
    const auto found = std::find_if(targets.begin(), targets.end(), [&](CompileTarget target) {
        return GetTargetName(target) == name;
    });
    return found == targets.end() ? std::nullopt : std::optional(*found);
}

} // namespace Mox::Host
