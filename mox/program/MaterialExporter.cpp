#include "mox/program/MaterialExporter.h"

#include "mox/document/DocumentInputs.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/ExportInputs.h"

#include <utility>

namespace Mox::Host {

MaterialExporter::MaterialExporter(const PluginSet& plugins, Host::Environment environment)
    : _plugins(plugins), _environment(std::move(environment))
{}

ExportedMaterial MaterialExporter::Export(const std::filesystem::path& file) const
{
    ProblemList problems;
    MaterialDocument document = ReadMaterialDocument(file, problems);
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
    exported.Inputs = ExportInputs(_environment, _plugins);
    return exported;
}

} // namespace Mox::Host
