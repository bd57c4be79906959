#include "mox/program/ProgramExporter.h"

#include "mox/host/OpenMaterial.h"
#include "mox/program/ExportInputs.h"
#include "mox/program/MaterialProgram.h"

namespace Mox::Host {

ProgramExporter::ProgramExporter(const PluginSet& plugins, Environment environment,
                                 const ProgramOptions& options)
    : _plugins(plugins), _environment(std::move(environment)), _options(options)
{}

ExportedMaterial ProgramExporter::Export(const std::filesystem::path& file) const
{
    ExportedMaterial exported;
    const MaterialGraph graph = OpenMaterial(file, _plugins, exported.Problems);
    if (exported.Problems.HasErrors())
        return exported;
    CgProgram program = BuildMaterialProgram(graph, _environment, _options, exported.Problems);
    exported.Texts = {std::move(program.Vertex.Text), std::move(program.Fragment.Text)};

    exported.Inputs = ExportInputs(graph, file, _environment, _plugins);
    return exported;
}

} // namespace Mox::Host
