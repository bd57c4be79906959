#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"

#include <boost/shared_ptr.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace Mox::Materials {

/// Declare a property of a node: create it, set its help text and default, and add it to the node's
/// bag. The node stores the returned handle in a member and reads the value through it.
/// @throws ShaderError if the node already has a property with this name

MOX_API boost::shared_ptr<GuiProperty> DeclareBool(GuiNode& node, const char* name,
                                                   const char* help, bool value);
MOX_API boost::shared_ptr<GuiProperty> DeclareInt(GuiNode& node, const char* name, const char* help,
                                                  std::int32_t value);
MOX_API boost::shared_ptr<GuiProperty> DeclareFloat(GuiNode& node, const char* name,
                                                    const char* help, float value);
MOX_API boost::shared_ptr<GuiProperty> DeclareColour(GuiNode& node, const char* name,
                                                     const char* help, float red, float green,
                                                     float blue);

/// The choices in display order: at least one, without duplicates. The first one is the default.
MOX_API boost::shared_ptr<GuiProperty>
DeclareEnum(GuiNode& node, const char* name, const char* help, std::span<const char* const> words);

/// Declares a reference to a node of the given type, initially empty.
MOX_API boost::shared_ptr<GuiProperty> DeclareNode(GuiNode& node, const char* name,
                                                   const char* help, const char* typeName);

/// Tables of settings that an enum property selects from: each row has the name of its choice in
/// the field Name, and the names in table order are the property's choices.

template <class Row, std::size_t Count>
constexpr std::array<const char*, Count> NamesOf(const Row (&rows)[Count])
{
    std::array<const char*, Count> names{};
    for (std::size_t i = 0; i < Count; ++i)
        names[i] = rows[i].Name;
    return names;
}

/// Returns the row with a name. The property only accepts names of the table; if a host bypassed
/// the setters and wrote another value, the last row is returned.
template <class Row, std::size_t Count>
const Row& RowNamed(const Row (&rows)[Count], const std::string& name)
{
    for (const Row& row : rows) {
        if (name == row.Name)
            return row;
    }
    return rows[Count - 1];
}

/// Returns the number of components that a property specifies for a vector.
/// @throws ShaderError if it is not between 2 and 4
MOX_API std::int32_t GetVectorCount(const GuiProperty& property);

} // namespace Mox::Materials
