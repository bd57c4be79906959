#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiProperty.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Mox::Materials {

/// The properties of a node: in order of declaration for display, by name for loading, with a
/// version number that determines whether a stored set can be loaded.
///
/// Nodes share the properties through handles of their own. Every property is in Properties and in
/// Index exactly once and cannot be removed.
class MOX_API GuiPropertyBag
{
public:
    GuiPropertyBag();
    ~GuiPropertyBag();
    GuiPropertyBag(const GuiPropertyBag&) = delete;
    GuiPropertyBag& operator=(const GuiPropertyBag&) = delete;

    /// Appends a property under its Name.
    /// @throws ShaderError if the name is taken, in which case the bag does not change
    void Add(const boost::shared_ptr<GuiProperty>& property);

    /// Returns the handle stored under a name.
    /// @throws ShaderError if there is none
    boost::shared_ptr<GuiProperty>& Get(const std::string& name);

    /// Copies the values of properties with equal names, in this bag's order. Properties that only
    /// one bag has are ignored. Versions are not compared.
    /// @throws ShaderError if copying a value fails; earlier ones have been copied
    void CopyFrom(const boost::shared_ptr<GuiPropertyBag>& source);

    std::int32_t Version = 0;
    std::vector<boost::shared_ptr<GuiProperty>> Properties;      ///< in order of addition
    std::map<std::string, boost::shared_ptr<GuiProperty>> Index; ///< the same properties by Name
};

} // namespace Mox::Materials
