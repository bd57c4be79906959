#pragma once

#include "mox/Export.h"

#include <string>

namespace Mox::Materials {

/// One row of a factory's catalogue.
class MOX_API GuiNodeDescription
{
public:
    GuiNodeDescription();

    /// A listed type without icon whose Label is the type name.
    explicit GuiNodeDescription(const std::string& typeName);

    GuiNodeDescription(const GuiNodeDescription& other);
    GuiNodeDescription(GuiNodeDescription&& other) noexcept;
    GuiNodeDescription& operator=(const GuiNodeDescription& other);
    GuiNodeDescription& operator=(GuiNodeDescription&& other) noexcept;
    ~GuiNodeDescription();

    std::string TypeName;              ///< the key that GuiNodeFactory::Create takes
    std::string Library;               ///< name of the library that supplies the type
    std::string Label;                 ///< text that the host shows for the type
    bool Listed = true;                ///< whether the host offers the type to the user
    const char* const* Icon = nullptr; ///< XPM strings of the supplying library, or null; not owned
};

} // namespace Mox::Materials
