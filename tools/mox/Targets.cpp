#include "Targets.h"

#include "mox/program/ProgramFormat.h"
#include "mox/targets/TargetCheck.h"
#include "mox/targets/TargetFormat.h"

#include <algorithm>
#ifdef MOX_HAS_COMPILER
#include "mox/targets/ProgramCompiler.h"
#endif

namespace Mox::Tool {

namespace {

constexpr const char* cgWord = "cg";

bool Holds(const std::vector<std::string>& words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsAvailable([[maybe_unused]] Host::CompileTarget target)
{
#ifdef MOX_HAS_COMPILER
    return true;
#else
    return target != Host::CompileTarget::Spirv;
#endif
}

} // namespace

std::vector<std::string> TargetWords()
{
    std::vector<std::string> words{cgWord};
    for (const Host::CompileTarget target : Host::AllCompileTargets()) {
        if (IsAvailable(target))
            words.emplace_back(Host::GetTargetName(target));
    }
    return words;
}

bool IsBinaryTarget(std::string_view word)
{
    return word == Host::GetTargetName(Host::CompileTarget::Spirv);
}

std::vector<std::unique_ptr<Host::ProgramFormat>> MakeFormats(const std::vector<std::string>& words,
                                                              Languages::Precision precision,
                                                              [[maybe_unused]] bool optimises)
{
    std::vector<std::unique_ptr<Host::ProgramFormat>> formats;
    if (Holds(words, cgWord))
        formats.push_back(std::make_unique<Host::CgFormat>());
    std::vector<Host::CompileTarget> targets;
    Host::SpirvMaker makeSpirv;
    for (const Host::CompileTarget target : Host::AllCompileTargets()) {
        if (!IsAvailable(target) || !Holds(words, Host::GetTargetName(target)))
            continue;
        targets.push_back(target);
#ifdef MOX_HAS_COMPILER
        if (target == Host::CompileTarget::Spirv)
            makeSpirv = Host::ProgramCompiler(optimises).MakeSpirv();
#endif
    }
    if (!targets.empty())
        formats.push_back(std::make_unique<Host::TargetFormat>(std::move(targets), precision,
                                                               std::move(makeSpirv)));
    return formats;
}

std::unique_ptr<Host::ProgramFormat> MakeTargetCheck()
{
    return std::make_unique<Host::TargetCheck>();
}

} // namespace Mox::Tool
