#include "mox/nodekit/PortRebuild.h"

namespace Mox::Materials {

void ClearPorts(GuiNode& node)
{
    node.InputPorts.clear();
    node.OutputPorts.clear();
}

void AppendPorts(std::vector<GuiPort>& ports, std::span<const PortRow> rows)
{
    ports.reserve(ports.size() + rows.size());
    for (const PortRow& row : rows)
        AppendPort(ports, row);
}

void AppendPort(std::vector<GuiPort>& ports, const PortRow& row)
{
    GuiPort& port = ports.emplace_back(row.Name, row.Label);
    if (row.ComponentCount)
        port.SetComponentCount(*row.ComponentCount);
    if (row.Precision)
        port.SetPrecision(*row.Precision);
}

} // namespace Mox::Materials
