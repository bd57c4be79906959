#include "mox/program/ProgramExporter.h"

#include "mox/program/MaterialProgram.h"

#include <iterator>
#include <utility>

namespace Mox::Host {

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
        std::vector<std::string> texts =
            WriteProgram(*format, program, graph, graph.Document().File, exported.Problems);
        std::move(texts.begin(), texts.end(), std::back_inserter(exported.Texts));
    }
    exported.Header = program.Header;
}

} // namespace Mox::Host
