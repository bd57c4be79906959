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

/// What a plug-in offers: a catalogue of node types and their creation. The host owns the factory
/// and deletes it through the virtual destructor, before it unloads the plug-in.
class MOX_API GuiNodeFactory
{
public:
    GuiNodeFactory();
    GuiNodeFactory(const GuiNodeFactory&) = delete;
    GuiNodeFactory& operator=(const GuiNodeFactory&) = delete;
    virtual ~GuiNodeFactory();

    /// A new node of a type, compared exactly; also of types that are not listed. The plug-in stays
    /// loaded until the last handle to the node has gone.
    /// @throws ShaderError if the factory does not know the type
    virtual boost::shared_ptr<GuiNode> Create(const std::string& typeName) = 0;

    std::vector<GuiNodeDescription> Descriptions; ///< in catalogue order
};

} // namespace Mox::Materials
