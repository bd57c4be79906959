#pragma once

#include "mox/program/CgWriter.h"
#include "mox/program/MaterialExporter.h"
#include "mox/program/ProgramFormat.h"

#include <memory>

namespace Mox::Host {

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

} // namespace Mox::Host
