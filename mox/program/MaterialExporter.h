#pragma once

#include "mox/batch/Exporter.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// Base class of exporters that write files from the resolved graph of a material.
class MaterialExporter : public Exporter
{
public:
    /// @param plugins must outlive this object
    MaterialExporter(const PluginSet& plugins, Host::Environment environment);

    ExportedMaterial Export(const std::filesystem::path& file) const override;

    /// Exports a document that has already been read.
    /// @param problems found while reading it
    ExportedMaterial Export(MaterialDocument document, ProblemList problems) const;

protected:
    const Host::Environment& Environment() const { return _environment; }

    /// @param exported receives contents, header and problems
    virtual void Write(const MaterialGraph& graph, ExportedMaterial& exported) const = 0;

private:
    const PluginSet& _plugins;
    const Host::Environment _environment;
};

} // namespace Mox::Host
