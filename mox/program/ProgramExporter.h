#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/Exporter.h"
#include "mox/host/PluginSet.h"
#include "mox/program/CgWriter.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace Mox::Host {

/// Returns the files, other than the document, that programs depend on: the environment and all
/// plug-ins, since a node type comes from the first plug-in that offers it. Textures are not
/// included: programs contain the names of their parameters but none of their pixels.
std::vector<std::filesystem::path> ExportInputs(const Environment& environment,
                                                const PluginSet& plugins);

/// Base class of exporters that write files from the resolved graph of a material.
class MaterialExporter : public Exporter
{
public:
    /// @param plugins must outlive the object
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

/// Exports the programs of a material in one or more formats.
class ProgramExporter : public MaterialExporter
{
public:
    /// @param plugins must outlive this object
    /// @param formats to export to, in this order
    ProgramExporter(const PluginSet& plugins, Host::Environment environment,
                    const ProgramOptions& options,
                    std::vector<std::unique_ptr<ProgramFormat>> formats);

    const std::vector<std::string>& Endings() const override { return _endings; }

private:
    void Write(const MaterialGraph& graph, ExportedMaterial& exported) const override;

    const ProgramOptions _options;
    const std::vector<std::unique_ptr<ProgramFormat>> _formats;
    std::vector<std::string> _endings;
};

/// Exports the connected shader graph of a material as readable text, without the parts that the
/// environment adds to turn it into programs.
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
