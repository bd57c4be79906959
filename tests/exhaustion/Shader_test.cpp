#include "fuzz/shader/ShaderSession.h"
#include "mox/host/File.h"
#include "tests/exhaustion/EveryAllocation.h"

#include <filesystem>

using namespace Mox;

namespace {

constexpr const char* fuzzInputs = MOX_TEST_DATA "/../fuzz/corpus/fuzz_shader_graph";

/// Makes every call in the fuzzer's inputs and compares the complete state of graphs, generators
/// and nodes.
TEST(ShaderExhaustion, CallsOnGraphsAreWholeOrNotAtAll)
{
    for (const auto& input : std::filesystem::directory_iterator(fuzzInputs)) {
        SCOPED_TRACE(input.path());
        const std::string bytes = Host::ReadFile(input.path());
        const Choices choices(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        for (const auto shortage : {Allocations::Shortage::Once, Allocations::Shortage::Lasting}) {
            const std::size_t live = Allocations::LiveCount(Allocations::Owner::All);
            RunShaderSession(choices, [&](const auto& call, const auto& compare) {
                for (std::size_t number = 1;; ++number) {
                    Allocations::FailAt(number, shortage);
                    try {
                        call();
                        Allocations::EndFailing();
                        return;
                    } catch (const std::bad_alloc&) {
                        Allocations::EndFailing();
                    }
                    compare();
                }
            });
            EXPECT_EQ(Allocations::LiveCount(Allocations::Owner::All), live) << "blocks leak";
        }
    }
}

} // namespace
