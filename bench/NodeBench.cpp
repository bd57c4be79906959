#include "PlainNode.h"
#include "Road.h"
#include "Stopwatch.h"
#include "mox/host/Plugin.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Bench {

namespace {

using Materials::GuiNode;
using Materials::GuiProperty;
using Materials::GuiPropertyBag;

/// Reports seconds for each node of making count of them and of freeing them all.
template <class Make>
void MeasureNodes(benchmark::State& state, Make make)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    double creation = 0;
    double release = 0;
    std::vector<decltype(make())> nodes;
    nodes.reserve(count);
    for ([[maybe_unused]] auto _ : state) {
        Stopwatch watch;
        for (std::size_t i = 0; i < count; ++i)
            nodes.push_back(make());
        creation += watch.Lap();
        nodes.clear();
        release += watch.Lap();
    }
    const double total = static_cast<double>(state.iterations()) * static_cast<double>(count);
    state.counters["create"] = creation / total;
    state.counters["free"] = release / total;
}

/// The properties of a new node of a type as plain rows.
std::vector<PlainProperty> RowsOf(const GuiNode& node)
{
    std::vector<PlainProperty> rows;
    for (const auto& property : node.Properties->Properties) {
        PlainProperty row;
        row.Name = property->Name;
        row.Help = property->Help;
        row.Editable = property->Editable;
        row.Visible = property->Visible;
        row.Style = property->Style;
        row.Kind = static_cast<int>(property->Kind);
        row.Text = property->Text;
        row.Integer = property->Integer;
        std::copy(std::begin(property->Floats), std::end(property->Floats), row.Floats);
        row.Choices = property->Choices;
        rows.push_back(row);
    }
    return rows;
}

void MeasureCopy(benchmark::State& state, const Workshop& workshop)
{
    const auto source = workshop.Plugins.CreateNode("CoreMaths");
    const auto target = workshop.Plugins.CreateNode("CoreMaths");
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

/// Loads the plug-in anew each time: nothing else keeps it loaded.
void MeasurePluginLoad(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        const Host::Plugin plugin(MOX_CORE_PLUGIN);
        benchmark::DoNotOptimize(plugin.Descriptions().data());
    }
}

} // namespace

void RegisterNodeBenchmarks(const Workshop& workshop)
{
    benchmark::RegisterBenchmark("copy bytes", MeasureByteCopy)->Arg(4096);
    benchmark::RegisterBenchmark("plug-in/load", MeasurePluginLoad);
    const auto rows = std::make_shared<std::vector<PlainProperty>>(
        RowsOf(*workshop.Plugins.CreateNode("CoreMaths")));
    for (const std::int64_t count : {1000, 100000}) {
        benchmark::RegisterBenchmark("plain/CoreMaths", [rows](benchmark::State& state) {
            MeasureNodes(state, [&] { return CreatePlainNode(*rows); });
        })->Arg(count);
        benchmark::RegisterBenchmark("node/CoreMaths", [&workshop](benchmark::State& state) {
            MeasureNodes(state, [&] { return workshop.Plugins.CreateNode("CoreMaths"); });
        })->Arg(count);
    }
    for (const Host::Plugin& plugin : workshop.Plugins.Plugins()) {
        for (const auto& description : plugin.Descriptions()) {
            if (!description.Listed || description.TypeName == "CoreMaths")
                continue;
            benchmark::RegisterBenchmark(
                ("node/" + description.TypeName).c_str(),
                [&plugin, type = description.TypeName](benchmark::State& state) {
                    MeasureNodes(state, [&] { return plugin.CreateNode(type); });
                })
                ->Arg(1000);
        }
    }
    benchmark::RegisterBenchmark(
        "bag/CopyFrom", [&workshop](benchmark::State& state) { MeasureCopy(state, workshop); });
}

} // namespace Mox::Bench
