#include "MeasureNodes.h"
#include "Pipeline.h"
#include "mox/authoring/GuiNode.h"
#include "mox/host/Plugin.h"

#include <benchmark/benchmark.h>
#include <string>

namespace Mox::Bench {

namespace {

void MeasureCopy(benchmark::State& state, const Workshop& workshop)
{
    const auto source = workshop.Plugins.CreateNode("CoreMaths").Handle();
    const auto target = workshop.Plugins.CreateNode("CoreMaths").Handle();
    for ([[maybe_unused]] auto _ : state)
        target->Properties->CopyFrom(source->Properties);
}

void MeasureByteCopy(benchmark::State& state)
{
    const std::string bytes(static_cast<std::size_t>(state.range(0)), 'x');
    for ([[maybe_unused]] auto _ : state) {
        std::string copy(bytes);
        benchmark::DoNotOptimize(copy.data());
    }
}

/// Loads the plug-in anew in each iteration, because nothing else keeps it loaded.
void MeasurePluginLoad(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        const Host::Plugin plugin(MOX_CORE_PLUGIN);
        benchmark::DoNotOptimize(plugin.Types().data());
    }
}

} // namespace

void RegisterNodeBenchmarks(const Workshop& workshop)
{
    benchmark::RegisterBenchmark("copy bytes", MeasureByteCopy)->Arg(4096);
    benchmark::RegisterBenchmark("plug-in/load", MeasurePluginLoad);
    for (const std::int64_t count : {1000, 100000}) {
        benchmark::RegisterBenchmark("node/CoreMaths", [&workshop](benchmark::State& state) {
            MeasureNodes(state, [&] { return workshop.Plugins.CreateNode("CoreMaths").Handle(); });
        })->Arg(count);
    }
    for (const Host::Plugin& plugin : workshop.Plugins.Plugins()) {
        for (const auto& description : plugin.Types()) {
            if (!description.Listed || description.TypeName == "CoreMaths")
                continue;
            benchmark::RegisterBenchmark(
                ("node/" + description.TypeName).c_str(),
                [&plugin, type = description.TypeName](benchmark::State& state) {
                    MeasureNodes(state, [&] { return plugin.CreateNode(type).Handle(); });
                })
                ->Arg(1000);
        }
    }
    benchmark::RegisterBenchmark(
        "bag/CopyFrom", [&workshop](benchmark::State& state) { MeasureCopy(state, workshop); });
}

} // namespace Mox::Bench
