#pragma once

#include "mox/host/Exporter.h"
#include "mox/host/PluginSet.h"
#include "mox/program/CgProgramBuilder.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// Exports the Cg programs of a material, one text for each stage.
class ProgramExporter : public Exporter
{
public:
    /// @param plugins must live as long as this object
    ProgramExporter(const PluginSet& plugins, Environment environment,
                    const ProgramOptions& options);

    const std::vector<std::string>& Endings() const override { return _endings; }
    ExportedMaterial Export(const std::filesystem::path& file) const override;

private:
    const PluginSet& _plugins;
    const Environment _environment;
    const ProgramOptions _options;
    const std::vector<std::string> _endings{".vertex.cg", ".fragment.cg"};
};

} // namespace Mox::Host
