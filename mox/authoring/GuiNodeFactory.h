#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace Mox::Materials {

/// One row of a factory's catalogue.
class MOX_API GuiNodeDescription
{
public:
    GuiNodeDescription();

    /// Describes a listed type without an icon. Its label is the type name.
    explicit GuiNodeDescription(const std::string& typeName);

    GuiNodeDescription(const GuiNodeDescription& other);
    GuiNodeDescription(GuiNodeDescription&& other) noexcept;
    GuiNodeDescription& operator=(const GuiNodeDescription& other);
    GuiNodeDescription& operator=(GuiNodeDescription&& other) noexcept;
    ~GuiNodeDescription();

    std::string TypeName;              ///< passed to GuiNodeFactory::Create
    std::string Library;               ///< name of the library that provides the type
    std::string Label;                 ///< name shown to the user
    bool Listed = true;                ///< whether the host offers the type to the user
    const char* const* Icon = nullptr; ///< XPM strings, owned by the library that provides the
                                       ///< type; or null
};

/// What a plug-in provides: a catalogue of node types, and their creation. The host owns the
/// factory and deletes it through the virtual destructor, before it unloads the plug-in.
class MOX_API GuiNodeFactory
{
public:
    GuiNodeFactory();
    GuiNodeFactory(const GuiNodeFactory&) = delete;
    GuiNodeFactory& operator=(const GuiNodeFactory&) = delete;
    virtual ~GuiNodeFactory();

    /// Creates a node. The type name must match exactly; types that are not listed can also be
    /// created. The plug-in must stay loaded until the last handle to the node has been released.
    /// @throws ShaderError if the factory does not have the type
    virtual boost::shared_ptr<GuiNode> Create(const std::string& typeName) = 0;

    std::vector<GuiNodeDescription> Descriptions; ///< in catalogue order
};

} // namespace Mox::Materials
