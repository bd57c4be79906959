#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiProperty.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Mox::Materials {

/// The set of properties of one node: in declaration order for display, by name for loading, and
/// with the version number that decides whether a stored set may be loaded.
///
/// Properties are shared with the handles that nodes keep of their own. Every property stands once
/// in Properties and once in Index, and none is ever removed.
class MOX_API GuiPropertyBag
{
public:
    GuiPropertyBag();
    ~GuiPropertyBag();
    GuiPropertyBag(const GuiPropertyBag&) = delete;
    GuiPropertyBag& operator=(const GuiPropertyBag&) = delete;

    /// Appends a property under its Name.
    /// @throws ShaderError if the name is taken; the bag does not change then
    void Add(const boost::shared_ptr<GuiProperty>& property);

    /// The handle stored under a name.
    /// @throws ShaderError if there is none
    boost::shared_ptr<GuiProperty>& Get(const std::string& name);

    /// Copies the values of equally named properties, in this bag's order. What only one side has
    /// is left alone. Versions are not compared.
    /// @throws ShaderError if a single copy fails; the earlier ones stay copied
    void CopyFrom(const boost::shared_ptr<GuiPropertyBag>& source);

    std::int32_t Version = 0;
    std::vector<boost::shared_ptr<GuiProperty>> Properties;      ///< in the order of Add
    std::map<std::string, boost::shared_ptr<GuiProperty>> Index; ///< the same ones by Name
};

} // namespace Mox::Materials
