#include "Commands.h"
#include "LoadPlugins.h"
#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"
#include "mox/host/ShaderExport.h"
#include "mox/host/ShaderGraphText.h"

#include <iostream>

namespace Mox::Tool {

namespace {

void Export(const std::string& file, const CommonOptions& common)
{
    const Host::PluginSet plugins = LoadPlugins(common);
    Host::MaterialGraph graph = Host::LoadMaterial(Host::ReadMaterialDocument(file), plugins);
    Host::ProblemList problems;
    Host::ResolveGraph(graph, problems);
    Host::ReportCountConflicts(graph, problems);
    problems.ThrowFirstError();
    ShaderGraph shaderGraph;
    Host::GenerateShaderGraph(graph, shaderGraph);
    std::cout << Host::FormatShaderGraph(shaderGraph);
}

} // namespace

void AddExportCommand(CLI::App& program, const CommonOptions& common)
{
    auto* command =
        program.add_subcommand("export", "Print the finished shader graph of a material");
    auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "Material document")->required();
    command->callback([file, &common] { Export(*file, common); });
}

} // namespace Mox::Tool
