#include "Pipeline.h"

#include <benchmark/benchmark.h>

namespace Mox::Bench {

void RegisterPlainBenchmarks(const Workshop& workshop);

} // namespace Mox::Bench

/// Runs only the plain baseline, in a program that uses the C library's allocator.
int main(int argumentCount, char** arguments)
{
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments))
        return 2;
    const Mox::Bench::Workshop workshop;
    Mox::Bench::RegisterPlainBenchmarks(workshop);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
