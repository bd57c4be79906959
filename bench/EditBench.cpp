#include "MaterialShapes.h"
#include "Pipeline.h"
#include "ShapeFiles.h"
#include "Stopwatch.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"

#include <benchmark/benchmark.h>

namespace Mox::Bench {

namespace {

/// Resolves and checks a loaded graph, then does so again after a value in its middle has changed.
void MeasureEdit(benchmark::State& state, const Workshop& workshop)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    double first = 0;
    double again = 0;
    for ([[maybe_unused]] auto _ : state) {
        Host::ProblemList problems;
        Host::MaterialGraph graph = Host::LoadMaterial(
            Host::ReadMaterialDocument(FileOf(Shape::Chain, count)), workshop.Plugins, problems);
        const std::string node = "n" + std::to_string(count / 2);
        Host::GraphResolver resolver(graph);
        const auto resolve = [&] {
            for (const std::size_t index : resolver.Resolve(problems))
                Host::ReportCountConflict(graph.Nodes()[index], problems);
        };
        Stopwatch watch;
        resolve();
        first += watch.Lap();
        // The first change runs with a cold cache; the result is meant for continuous editing.
        constexpr int changes = 100;
        for (int i = 0; i < changes; ++i) {
            graph.Apply({{Host::SetProperties{
                {{node,
                  {"Default Value 2", Materials::GuiPropertyKind::Float, std::to_string(i)}}}}}});
            resolve();
        }
        again += watch.Lap() / changes;
    }
    state.counters["first"] = first / static_cast<double>(state.iterations());
    state.counters["again"] = again / static_cast<double>(state.iterations());
}

} // namespace

void RegisterEditBenchmarks(const Workshop& workshop)
{
    benchmark::RegisterBenchmark(
        "edit", [&workshop](benchmark::State& state) { MeasureEdit(state, workshop); })
        ->Arg(100000)
        ->Iterations(1);
}

} // namespace Mox::Bench
