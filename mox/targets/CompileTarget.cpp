#include "mox/targets/CompileTarget.h"

#include "mox/languages/Languages.h"

#include <cstddef>
#include <iterator>

namespace Mox::Host {

using Languages::allLanguages;

static_assert(std::size(allLanguages) == static_cast<std::size_t>(CompileTarget::Spirv));

const std::vector<CompileTarget>& AllCompileTargets()
{
    static const std::vector<CompileTarget> targets = [] {
        std::vector<CompileTarget> all;
        for (std::size_t i = 0; i <= std::size(allLanguages); ++i)
            all.push_back(static_cast<CompileTarget>(i));
        return all;
    }();
    return targets;
}

std::string_view GetTargetName(CompileTarget target)
{
    return target == CompileTarget::Spirv ? "spirv" : GetTargetLanguage(target).Name;
}

std::string_view GetTargetEnding(CompileTarget target)
{
    return target == CompileTarget::Spirv ? "spv" : GetTargetLanguage(target).Ending;
}

const Languages::Language& GetTargetLanguage(CompileTarget target)
{
    return target == CompileTarget::Spirv ? Languages::Language::VulkanGlsl
                                          : *allLanguages[static_cast<std::size_t>(target)];
}

} // namespace Mox::Host
