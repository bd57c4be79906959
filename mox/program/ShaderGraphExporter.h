#pragma once

#include "mox/program/MaterialExporter.h"

namespace Mox::Host {

/// Exports the connected shader graph of a material as readable text, without the parts that the
/// environment adds to make programs of it.
class ShaderGraphExporter : public MaterialExporter
{
public:
    using MaterialExporter::MaterialExporter;

    const std::vector<std::string>& Endings() const override { return _endings; }

private:
    void Write(const MaterialGraph& graph, ExportedMaterial& exported) const override;

    const std::vector<std::string> _endings{".graph.txt"};
};

} // namespace Mox::Host
