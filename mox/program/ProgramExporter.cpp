#include "mox/program/ProgramExporter.h"

#include "mox/document/DocumentInputs.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/ExportInputs.h"
#include "mox/program/MaterialProgram.h"

#include <iterator>

namespace Mox::Host {

ProgramExporter::ProgramExporter(const PluginSet& plugins, Environment environment,
                                 const ProgramOptions& options,
                                 std::vector<std::unique_ptr<ProgramFormat>> formats)
    : _plugins(plugins), _environment(std::move(environment)), _options(options),
      _formats(std::move(formats))
{
    for (const auto& format : _formats)
        _endings.insert(_endings.end(), format->Endings().begin(), format->Endings().end());
}

ExportedMaterial ProgramExporter::Export(const std::filesystem::path& file) const
{
    ExportedMaterial exported;
    const MaterialGraph graph = OpenMaterial(file, _plugins, exported.Problems);
    if (exported.Problems.HasErrors())
        return exported;
    WarnOfMissingTextures(graph.Document(), file, exported.Problems);
    const CgProgram program =
        BuildMaterialProgram(graph, _environment, _options, exported.Problems);
    if (exported.Problems.HasErrors())
        return exported;
    for (const auto& format : _formats) {
        std::vector<std::string> texts =
            WriteProgram(*format, program, graph, file, exported.Problems);
        std::move(texts.begin(), texts.end(), std::back_inserter(exported.Texts));
    }
    exported.Header = program.Header;
    exported.Inputs = ExportInputs(_environment, _plugins);
    return exported;
}

} // namespace Mox::Host
