#include "Pipeline.h"

#include <benchmark/benchmark.h>

namespace Mox::Bench {

void RegisterEditBenchmarks(const Workshop& workshop);
void RegisterNodeBenchmarks(const Workshop& workshop);
void RegisterPartBenchmarks(const Workshop& workshop);
void RegisterPlainBenchmarks(const Workshop& workshop);
void RegisterPipelineBenchmarks(const Workshop& workshop);

} // namespace Mox::Bench

int main(int argumentCount, char** arguments)
{
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments))
        return 2;
    const Mox::Bench::Workshop workshop;
    Mox::Bench::RegisterPlainBenchmarks(workshop);
    Mox::Bench::RegisterNodeBenchmarks(workshop);
    Mox::Bench::RegisterEditBenchmarks(workshop);
    Mox::Bench::RegisterPipelineBenchmarks(workshop);
    Mox::Bench::RegisterPartBenchmarks(workshop);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
