#pragma once

#include "mox/Export.h"
#include "mox/shader/ShaderType.h"

#include <cstdint>
#include <string>

namespace Mox::Materials {

/// A port of an authoring node. "Known" means that the value may be read; "fixed" means that the
/// node set it and resolution does not change it.
class MOX_API GuiPort
{
public:
    /// If the label is empty, the name is shown.
    GuiPort(const std::string& name, const std::string& label);
    GuiPort(const GuiPort& other);
    GuiPort(GuiPort&& other) noexcept;
    GuiPort& operator=(const GuiPort& other);
    GuiPort& operator=(GuiPort&& other) noexcept;
    ~GuiPort();

    /// Sets the count and makes it known and fixed.
    void SetComponentCount(std::int32_t count);

    /// @throws ShaderError if the count is unknown
    std::int32_t GetComponentCount() const;

    /// Sets the precision and makes it known and fixed.
    void SetPrecision(ComponentType precision);

    /// @throws ShaderError if the precision is unknown
    ComponentType GetPrecision() const;

    /// The Cg type of the port: (precision, component count, 1, 1).
    /// @throws ShaderError if the count, or otherwise the precision, is unknown
    ShaderType GetShaderType() const;

    std::string Name;  ///< name of the Cg parameter and lookup key, such as "in_uv"
    std::string Label; ///< name shown to the user, such as "uv"
    std::int32_t ComponentCount = 0;
    bool CountKnown = false;
    bool CountFixed = false;
    bool CountConflict = false; ///< set by resolution, for the host; never cleared here
    ComponentType Precision = ComponentType::Void;
    bool PrecisionKnown = false;
    bool PrecisionFixed = false;
    bool Connected = false; ///< whether an edge is attached; only the host sets it
};

} // namespace Mox::Materials
