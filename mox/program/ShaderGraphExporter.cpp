#include "mox/program/ShaderGraphExporter.h"

#include "mox/document/DocumentInputs.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/EnvironmentNodes.h"
#include "mox/program/ExportInputs.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Host {

ShaderGraphExporter::ShaderGraphExporter(const PluginSet& plugins, Environment environment)
    : _plugins(plugins), _environment(std::move(environment))
{}

ExportedMaterial ShaderGraphExporter::Export(const std::filesystem::path& file) const
{
    ExportedMaterial exported;
    const MaterialGraph graph = OpenMaterial(file, _plugins, exported.Problems);
    if (exported.Problems.HasErrors())
        return exported;
    WarnOfMissingTextures(graph.Document(), file, exported.Problems);
    GeneratedShader shader;
    shader.Graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(_environment));
    GenerateShaderGraph(graph, shader, exported.Problems);
    exported.Texts = {FormatShaderGraph(shader.Graph)};
    exported.Inputs = ExportInputs(_environment, _plugins);
    return exported;
}

} // namespace Mox::Host
