#include "MaterialShapes.h"
#include "Pipeline.h"
#include "ShapeFiles.h"

#include <benchmark/benchmark.h>
#include <string>

namespace Mox::Bench {

namespace {

void MeasurePipeline(benchmark::State& state, const Workshop& workshop, Shape shape,
                     Language language)
{
    const std::filesystem::path file = FileOf(shape, static_cast<std::size_t>(state.range(0)));
    PipelineTimes sum;
    for ([[maybe_unused]] auto _ : state) {
        const PipelineTimes times = RunPipeline(workshop, file, language);
        sum.Read += times.Read;
        sum.Load += times.Load;
        sum.Resolve += times.Resolve;
        sum.Write += times.Write;
        sum.Spell += times.Spell;
        sum.Free += times.Free;
    }
    const double total =
        static_cast<double>(state.iterations()) * static_cast<double>(state.range(0));
    state.counters["read"] = sum.Read / total;
    state.counters["load"] = sum.Load / total;
    state.counters["resolve"] = sum.Resolve / total;
    state.counters["write"] = sum.Write / total;
    state.counters["spell"] = sum.Spell / total;
    state.counters["free"] = sum.Free / total;
    state.counters["total"] = sum.Total() / total;
}

void Register(const Workshop& workshop, const std::string& name, const char* word,
              Language language, std::int64_t most)
{
    const Shape shape = ParseShape(word);
    for (std::int64_t count = 10; count <= most; count *= 10) {
        auto* benchmark = benchmark::RegisterBenchmark(
            (name + "/" + word).c_str(), [&workshop, shape, language](benchmark::State& state) {
                MeasurePipeline(state, workshop, shape, language);
            });
        benchmark->Arg(count)->Unit(benchmark::kMillisecond);
        if (count >= 10000)
            benchmark->Iterations(1);
    }
}

} // namespace

void RegisterPipelineBenchmarks(const Workshop& workshop)
{
    for (const char* word : {"chain", "values", "tree", "fan", "layered"})
        Register(workshop, "pipeline", word, Language::Cg, 100000);
    for (const char* word : {"chain", "values", "tree", "layered"})
        Register(workshop, "essl", word, Language::Essl, 10000);
}

} // namespace Mox::Bench
