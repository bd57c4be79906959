#pragma once

#include "Stopwatch.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace Mox::Bench {

/// Reports the time per node, in seconds, for creating count nodes and for freeing them.
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

} // namespace Mox::Bench
