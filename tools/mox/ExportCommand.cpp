#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"
#include "mox/program/MaterialProgram.h"

#include <iostream>

namespace Mox::Tool {

namespace {

void Export(const std::string& file, bool isPlain, const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    const Host::Environment environment = Host::ReadEnvironment(Host::DefaultEnvironmentFolder());
    const Host::MaterialGraph graph = Host::LoadMaterial(Host::ReadMaterialDocument(file), plugins);
    Host::ResolveGraph(graph);
    Host::ProblemList problems;
    const Host::CgProgram program =
        Host::BuildMaterialProgram(graph, environment, {!isPlain}, problems);
    for (const Host::Problem& problem : problems.Problems())
        std::cerr << "mox: " << problem.Format() << '\n';
    problems.ThrowFirstError();
    std::cout << program.Vertex.Text << "\n// ------\n" << program.Fragment.Text;
}

} // namespace

void AddExportCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("export", "Print the finished shader graph of a material");
    auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "Material document")->required();
    auto isPlain = std::make_shared<bool>(false);
    command->add_flag("--plain", *isPlain, "Without comments");
    command->callback([=, &common] { Export(*file, *isPlain, common); });
}

} // namespace Mox::Tool
