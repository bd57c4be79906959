#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace Mox::Materials {

/// A node's declaration of one port. A missing count or precision is left to resolution.
struct PortRow
{
    const char* Name;
    const char* Label;
    std::optional<std::int32_t> ComponentCount = std::nullopt;
    std::optional<ComponentType> Precision = std::nullopt;
};

/// Erases all ports, including all flags set by resolution and the host.
MOX_API void ClearPorts(GuiNode& node);

/// Appends a port for each row, in order.
MOX_API void AppendPorts(std::vector<GuiPort>& ports, std::span<const PortRow> rows);

MOX_API void AppendPort(std::vector<GuiPort>& ports, const PortRow& row);

} // namespace Mox::Materials
