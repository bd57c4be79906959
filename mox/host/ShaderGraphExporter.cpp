#include "mox/host/ShaderGraphExporter.h"

#include "mox/host/DocumentInputs.h"
#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"
#include "mox/host/ShaderExport.h"
#include "mox/host/ShaderGraphText.h"

namespace Mox::Host {

ExportedMaterial ShaderGraphExporter::Export(const std::filesystem::path& file) const
{
    const MaterialDocument document = ReadMaterialDocument(file);
    const MaterialGraph graph = LoadMaterial(document, _plugins);
    ResolveGraph(graph);
    ShaderGraph shaderGraph;
    GenerateShaderGraph(graph, shaderGraph);
    ExportedMaterial exported;
    exported.Texts.push_back(FormatShaderGraph(shaderGraph));
    exported.Inputs = TextureFiles(document);
    // A type comes from the first plug-in that offers it, so the result hangs on all of them.
    for (const Plugin& plugin : _plugins.Plugins())
        exported.Inputs.push_back(plugin.File());
    return exported;
}

} // namespace Mox::Host
