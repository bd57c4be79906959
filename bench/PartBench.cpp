#include "MaterialShapes.h"
#include "Pipeline.h"
#include "ShapeFiles.h"
#include "Stopwatch.h"
#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/EnvironmentNodes.h"
#include "mox/program/MaterialProgram.h"
#include "mox/program/ProgramPlanner.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <benchmark/benchmark.h>
#include <fstream>
#include <string>

namespace Mox::Bench {

namespace {

using Materials::Compose;

/// Adds the edges that nodes have recorded, like a host that only needs the graph.
void JoinEdges(ShaderGraphGenerator& generator)
{
    for (const auto& [edge, record] : generator.EdgeMap) {
        if (!record.Tail)
            continue;
        for (std::size_t i = 0; i < record.Heads.size(); ++i)
            generator.Connect(record.Tail, record.TailPort, record.Heads[i], record.HeadPorts[i]);
    }
}

/// Measures each step from a resolved graph onwards, per node.
void MeasureParts(benchmark::State& state, const Workshop& workshop, Shape shape)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    Host::ProblemList problems;
    Host::MaterialGraph graph = Host::LoadMaterial(Host::ReadMaterialDocument(FileOf(shape, count)),
                                                   workshop.Plugins, problems);
    Host::ResolveGraph(graph, problems);
    double generate = 0;
    double join = 0;
    double programs = 0;
    double save = 0;
    for ([[maybe_unused]] auto _ : state) {
        {
            ShaderGraph shaderGraph;
            shaderGraph.Providers.push_back(
                boost::make_shared<Host::EnvironmentProvider>(workshop.Environment));
            ShaderGraphGenerator generator(shaderGraph);
            Stopwatch watch;
            for (const Host::GraphNode& node : graph.Nodes())
                node.Gui.GenerateShader(node.Where, generator);
            generate += watch.Lap();
            JoinEdges(generator);
            join += watch.Lap();
        }
        Host::GeneratedShader shader;
        Host::CompleteShader(graph, workshop.Environment, shader, problems);
        Stopwatch watch;
        const Host::CgProgram program =
            Host::WriteCg(Host::PlanProgram(shader.Graph, shader.Origins, workshop.Environment,
                                            Host::StageCopies::HandedOn, problems),
                          {});
        programs += watch.Lap();
        const std::string text = Host::FormatMaterialDocument(graph.Document());
        save += watch.Lap();
        benchmark::DoNotOptimize(text.data());
    }
    problems.ThrowFirstError();
    const double total = static_cast<double>(state.iterations()) * static_cast<double>(count);
    state.counters["generate"] = generate / total;
    state.counters["join"] = join / total;
    state.counters["programs"] = programs / total;
    state.counters["save"] = save / total;
}

/// Measures writing bindings to XML and reading them back, per binding.
void MeasureBindings(benchmark::State& state)
{
    std::vector<Host::PluginBinding> bindings;
    for (std::int64_t i = 0; i < state.range(0); ++i)
        bindings.emplace_back(
            Materials::CreateBinding(Materials::StreamType::Float, Compose("value", i), 4));
    const std::filesystem::path file = TemporaryFolder() / "bindings.xml";
    double write = 0;
    double read = 0;
    for ([[maybe_unused]] auto _ : state) {
        Stopwatch watch;
        const std::string text = Host::FormatBindings(bindings);
        write += watch.Lap();
        std::ofstream(file) << text;
        watch.Lap();
        benchmark::DoNotOptimize(Host::ReadBindings(file));
        read += watch.Lap();
    }
    const double total =
        static_cast<double>(state.iterations()) * static_cast<double>(state.range(0));
    state.counters["write"] = write / total;
    state.counters["read"] = read / total;
}

} // namespace

void RegisterPartBenchmarks(const Workshop& workshop)
{
    // Without the host, a fan takes time quadratic in its number of edges: a node searches its list
    // whenever one is added.
    constexpr int largestFan = 1000;
    for (const char* word : {"chain", "tree", "fan", "layered"}) {
        const Shape shape = ParseShape(word);
        for (int count = 10; count <= (shape == Shape::Fan ? largestFan : 100000); count *= 100) {
            auto* benchmark =
                benchmark::RegisterBenchmark((std::string("parts/") + word).c_str(),
                                             [&workshop, shape](benchmark::State& state) {
                                                 MeasureParts(state, workshop, shape);
                                             });
            benchmark->Arg(count);
            if (count > 1000)
                benchmark->Iterations(1);
        }
    }
    benchmark::RegisterBenchmark("bindings", MeasureBindings)->Arg(1000);
}

} // namespace Mox::Bench
