#include "mox/host/ShaderGraphExporter.h"

#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"
#include "mox/host/ShaderExport.h"
#include "mox/host/ShaderGraphText.h"

namespace Mox::Host {

ExportedMaterial ShaderGraphExporter::Export(const std::filesystem::path& document) const
{
    const MaterialGraph graph = LoadMaterial(ReadMaterialDocument(document), _plugins);
    ResolveGraph(graph);
    ShaderGraph shaderGraph;
    GenerateShaderGraph(graph, shaderGraph);
    ExportedMaterial exported;
    exported.Texts.push_back(FormatShaderGraph(shaderGraph));
    // A type comes from the first plug-in that offers it, so the result hangs on all of them.
    for (const Plugin& plugin : _plugins.Plugins())
        exported.Inputs.push_back(plugin.File());
    return exported;
}

} // namespace Mox::Host
