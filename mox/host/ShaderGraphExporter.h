#pragma once

#include "mox/host/Exporter.h"
#include "mox/host/PluginSet.h"

namespace Mox::Host {

/// Exports the finished shader graph of a material as one text for people.
class ShaderGraphExporter : public Exporter
{
public:
    /// plugins must live as long as this object.
    explicit ShaderGraphExporter(const PluginSet& plugins) : _plugins(plugins) {}

    const std::vector<std::string>& Endings() const override { return _endings; }
    ExportedMaterial Export(const std::filesystem::path& file) const override;

private:
    const PluginSet& _plugins;
    std::vector<std::string> _endings{".txt"};
};

} // namespace Mox::Host
