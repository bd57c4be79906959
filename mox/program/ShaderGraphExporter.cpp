#include "mox/program/ShaderGraphExporter.h"

#include "mox/program/EnvironmentNodes.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Host {

void ShaderGraphExporter::Write(const MaterialGraph& graph, ExportedMaterial& exported) const
{
    GeneratedShader shader;
    shader.Graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(Environment()));
    GenerateShaderGraph(graph, shader, exported.Problems);
    exported.Texts = {FormatShaderGraph(shader.Graph)};
}

} // namespace Mox::Host
