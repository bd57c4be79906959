#include "Targets.h"

#include "mox/program/CgFormat.h"

#include <algorithm>
#ifdef MOX_HAS_COMPILER
#include "mox/compile/CompiledFormat.h"
#endif

namespace Mox::Tool {

namespace {

constexpr const char* cgWord = "cg";

bool Holds(const std::vector<std::string>& words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

} // namespace

std::vector<std::string> TargetWords()
{
    std::vector<std::string> words{cgWord};
#ifdef MOX_HAS_COMPILER
    for (const Host::CompileTarget target : Host::AllCompileTargets())
        words.emplace_back(Host::GetTargetName(target));
#endif
    return words;
}

bool IsBinaryTarget([[maybe_unused]] std::string_view word)
{
#ifdef MOX_HAS_COMPILER
    return word == Host::GetTargetName(Host::CompileTarget::Spirv);
#else
    return false;
#endif
}

std::vector<std::unique_ptr<Host::ProgramFormat>> MakeFormats(const std::vector<std::string>& words)
{
    std::vector<std::unique_ptr<Host::ProgramFormat>> formats;
    if (Holds(words, cgWord))
        formats.push_back(std::make_unique<Host::CgFormat>());
#ifdef MOX_HAS_COMPILER
    std::vector<Host::CompileTarget> targets;
    for (const Host::CompileTarget target : Host::AllCompileTargets()) {
        if (Holds(words, Host::GetTargetName(target)))
            targets.push_back(target);
    }
    if (!targets.empty())
        formats.push_back(std::make_unique<Host::CompiledFormat>(std::move(targets)));
#endif
    return formats;
}

std::unique_ptr<Host::ProgramFormat> MakeCompileCheck()
{
#ifdef MOX_HAS_COMPILER
    return std::make_unique<Host::CompileCheck>();
#else
    return {};
#endif
}

} // namespace Mox::Tool
