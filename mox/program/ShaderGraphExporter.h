#pragma once

#include "mox/batch/Exporter.h"
#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// Exports the finished shader graph of a material as text: what its nodes wrote, joined, without
/// what the environment adds to make programs of it.
class ShaderGraphExporter : public Exporter
{
public:
    /// @param plugins must live as long as this object
    ShaderGraphExporter(const PluginSet& plugins, Environment environment);

    const std::vector<std::string>& Endings() const override { return _endings; }
    ExportedMaterial Export(const std::filesystem::path& file) const override;

private:
    const PluginSet& _plugins;
    const Environment _environment;
    const std::vector<std::string> _endings{".graph.txt"};
};

} // namespace Mox::Host
