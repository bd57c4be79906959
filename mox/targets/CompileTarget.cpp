#include "mox/targets/CompileTarget.h"

#include <cstddef>

namespace Mox::Host {

namespace {

struct TargetRow
{
    CompileTarget Target;
    std::string_view Name;
    std::string_view Ending;
};

/// In the order of the enumerators.
constexpr TargetRow rows[] = {
    {CompileTarget::Hlsl, "hlsl", "hlsl"},
    {CompileTarget::Glsl, "glsl", "glsl"},
    {CompileTarget::GlslVulkan, "glsl-vulkan", "vulkan.glsl"},
    {CompileTarget::Essl, "essl", "essl"},
    {CompileTarget::Msl, "msl", "metal"},
    {CompileTarget::Wgsl, "wgsl", "wgsl"},
    {CompileTarget::Spirv, "spirv", "spv"},
};

const TargetRow& RowOf(CompileTarget target)
{
    return rows[static_cast<std::size_t>(target)];
}

} // namespace

const std::vector<CompileTarget>& AllCompileTargets()
{
    static const std::vector<CompileTarget> targets = [] {
        std::vector<CompileTarget> all;
        for (const TargetRow& row : rows)
            all.push_back(row.Target);
        return all;
    }();
    return targets;
}

std::string_view GetTargetName(CompileTarget target)
{
    return RowOf(target).Name;
}

std::string_view GetTargetEnding(CompileTarget target)
{
    return RowOf(target).Ending;
}

} // namespace Mox::Host
