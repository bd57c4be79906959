#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderType.h"

#include <cstdint>
#include <string>

namespace Mox::Materials {

/// One port of an authoring node. "Known" means that the value may be read, "fixed" that the node
/// set it and that resolution leaves it alone.
class MOX_API GuiPort
{
public:
    /// An empty label shows the name.
    GuiPort(const std::string& name, const std::string& label);
    GuiPort(const GuiPort& other);
    GuiPort(GuiPort&& other) noexcept;
    GuiPort& operator=(const GuiPort& other);
    GuiPort& operator=(GuiPort&& other) noexcept;
    ~GuiPort();

    /// Sets the count, known and fixed.
    void SetComponentCount(std::int32_t count);

    /// @throws ShaderError while the count is not known
    std::int32_t GetComponentCount() const;

    /// Sets the precision, known and fixed.
    void SetPrecision(ComponentType precision);

    /// @throws ShaderError while the precision is not known
    ComponentType GetPrecision() const;

    /// The Cg type of the port: (precision, component count, 1, 1).
    /// @throws ShaderError while the count, or else the precision, is not known
    ShaderType GetShaderType() const;

    std::string Name;  ///< Cg parameter name and key of port lookup, for instance "in_uv"
    std::string Label; ///< text that the host shows, for instance "uv"
    std::int32_t ComponentCount = 0;
    bool CountKnown = false;
    bool CountFixed = false;
    bool CountConflict = false; ///< set by resolution, read by the host, never cleared here
    ComponentType Precision = ComponentType::Void;
    bool PrecisionKnown = false;
    bool PrecisionFixed = false;
    bool Connected = false; ///< an edge is attached; only the host sets this
};

} // namespace Mox::Materials
