// Sources of Cg: whatever they hold, the front end ends with errors in them or with a tree; the
// tree is lowered and spelled in every language.

#include "mox/cg/Module.h"
#include "tests/support/Claim.h"

#include <algorithm>

using namespace Mox;

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
    return 0;
}
