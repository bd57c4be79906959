#include "mox/program/ProgramExporter.h"

#include "mox/document/DocumentTextures.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/interchange/ReadMaterial.h"
#include "mox/program/EnvironmentNodes.h"
#include "mox/program/MaterialProgram.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Mox::Host {

std::vector<std::filesystem::path> ExportInputs(const Environment& environment,
                                                const PluginSet& plugins)
{
    std::vector<std::filesystem::path> inputs = environment.Files;
    for (const Plugin& plugin : plugins.Plugins())
        inputs.push_back(plugin.File());
    return inputs;
}

MaterialExporter::MaterialExporter(const PluginSet& plugins, Host::Environment environment)
    : _plugins(plugins), _environment(std::move(environment))
{}

ExportedMaterial MaterialExporter::Export(const std::filesystem::path& file) const
{
    ProblemList problems;
    MaterialDocument document = ReadMaterial(file, problems);
    return Export(std::move(document), std::move(problems));
}

ExportedMaterial MaterialExporter::Export(MaterialDocument document, ProblemList problems) const
{
    ExportedMaterial exported;
    exported.Problems = std::move(problems);
    const MaterialGraph graph = OpenMaterial(std::move(document), _plugins, exported.Problems);
    if (exported.Problems.HasErrors())
        return exported;
    WarnOfMissingTextures(graph.Document(), graph.Document().File, exported.Problems);
    Write(graph, exported);
    exported.Inputs = graph.Document().Includes;
    std::ranges::move(ExportInputs(_environment, _plugins), std::back_inserter(exported.Inputs));
    return exported;
}

ProgramExporter::ProgramExporter(const PluginSet& plugins, Host::Environment environment,
                                 const ProgramOptions& options,
                                 std::vector<std::unique_ptr<ProgramFormat>> formats)
    : MaterialExporter(plugins, std::move(environment)), _options(options),
      _formats(std::move(formats))
{
    for (const auto& format : _formats)
        _endings.insert(_endings.end(), format->Endings().begin(), format->Endings().end());
}

void ProgramExporter::Write(const MaterialGraph& graph, ExportedMaterial& exported) const
{
    const CgProgram program =
        BuildMaterialProgram(graph, Environment(), _options, exported.Problems);
    if (exported.Problems.HasErrors())
        return;
    for (const auto& format : _formats) {
        for (ProgramFile& file :
             WriteProgram(*format, program, graph, graph.Document().File, exported.Problems))
            exported.Texts.push_back(std::move(file.Text));
    }
    exported.Header = program.Header;
}

void ShaderGraphExporter::Write(const MaterialGraph& graph, ExportedMaterial& exported) const
{
    GeneratedShader shader;
    shader.Graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(Environment()));
    GenerateShaderGraph(graph, shader, exported.Problems);
    exported.Texts = {FormatShaderGraph(shader.Graph)};
}

} // namespace Mox::Host
