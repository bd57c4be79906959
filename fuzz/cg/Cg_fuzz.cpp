// Arbitrary Cg sources: the front end returns errors in the source or a tree, and the tree is
// lowered and written in every language.

#include "mox/cg/Liveness.h"
#include "mox/cg/Lowering.h"
#include "mox/languages/Languages.h"
#include "tests/support/Claim.h"
#include "tests/support/PlainStage.h"

#include <algorithm>

using namespace Mox;

namespace {

void WriteStages(const Cg::Module& module, Languages::Precision precision)
{
    for (const bool isVertex : {true, false}) {
        Languages::StageProgram stage;
        try {
            stage = Languages::MakeStage(module, isVertex);
        } catch (const std::exception&) {
            continue; // its semantics do not belong to a stage
        }
        for (const Languages::Language* language : Languages::allLanguages)
            Claim(!language->Write(stage, precision).Text.empty(), "there is a text");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string source(reinterpret_cast<const char*>(data), size);
    const auto module = Cg::ReadModule(source);
    const auto lines = 1 + std::count(source.begin(), source.end(), '\n');
    for (const Cg::SourceError& error : module->Errors) {
        Claim(error.Where.Line >= 1 && error.Where.Line <= lines && error.Where.Column >= 1,
              "an error is inside the source");
        Claim(!error.Message.empty(), "an error says what is wrong");
    }
    if (!module->Errors.empty())
        return 0;
    Cg::LowerModule(*module);
    if (!module->Main())
        return 0;
    // Writing takes most of the time, so the length of the input determines what is omitted.
    const bool isFullFirst = size % 2 == 0;
    WriteStages(*module, isFullFirst ? Languages::Precision::Full : Languages::Precision::Relaxed);
    Cg::DropDead(*module, [](const Cg::Variable& output) { return output.Name.size() % 2 == 0; });
    WriteStages(*module, isFullFirst ? Languages::Precision::Relaxed : Languages::Precision::Full);
    return 0;
}
