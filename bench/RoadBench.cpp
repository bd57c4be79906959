#include "MaterialShapes.h"
#include "Road.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <string>

namespace Mox::Bench {

namespace {

/// The document of a shape in a file of the temporary folder, made once.
std::filesystem::path FileOf(const std::string& shape, std::int64_t count)
{
    const std::filesystem::path file = std::filesystem::temp_directory_path() /
                                       ("mox_bench_" + shape + std::to_string(count) + ".xml");
    if (!std::filesystem::exists(file))
        std::ofstream(file) << MakeDocument(ParseShape(shape), static_cast<std::size_t>(count));
    return file;
}

void MeasureRoad(benchmark::State& state, const Workshop& workshop, const std::string& shape)
{
    const std::filesystem::path file = FileOf(shape, state.range(0));
    RoadTimes sum;
    for ([[maybe_unused]] auto _ : state) {
        const RoadTimes times = TravelRoad(workshop, file);
        sum.Read += times.Read;
        sum.Load += times.Load;
        sum.Resolve += times.Resolve;
        sum.Write += times.Write;
        sum.Free += times.Free;
    }
    const double total =
        static_cast<double>(state.iterations()) * static_cast<double>(state.range(0));
    state.counters["read"] = sum.Read / total;
    state.counters["load"] = sum.Load / total;
    state.counters["resolve"] = sum.Resolve / total;
    state.counters["write"] = sum.Write / total;
    state.counters["free"] = sum.Free / total;
    state.counters["road"] = sum.Total() / total;
}

} // namespace

void RegisterRoadBenchmarks(const Workshop& workshop)
{
    for (const char* shape : {"chain", "values", "tree", "fan", "layered"}) {
        benchmark::RegisterBenchmark(
            (std::string("road/") + shape).c_str(),
            [&workshop, shape](benchmark::State& state) { MeasureRoad(state, workshop, shape); })
            ->RangeMultiplier(10)
            ->Range(10, 100000)
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace Mox::Bench
