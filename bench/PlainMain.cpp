#include "Road.h"

#include <benchmark/benchmark.h>

namespace Mox::Bench {

void RegisterPlainBenchmarks(const Workshop& workshop);

} // namespace Mox::Bench

/// The plain baseline alone, in a program that has the C library's allocator.
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
