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

/// Declare a property of a node: make it, give it its help text and default, and add it to the
/// node's bag. The handle is for the member through which the node reads the value ever after.
/// @throws ShaderError if the node has a property of that name already

MOX_API boost::shared_ptr<GuiProperty> DeclareBool(GuiNode& node, const char* name,
                                                   const char* help, bool value);
MOX_API boost::shared_ptr<GuiProperty> DeclareInt(GuiNode& node, const char* name, const char* help,
                                                  std::int32_t value);
MOX_API boost::shared_ptr<GuiProperty> DeclareFloat(GuiNode& node, const char* name,
                                                    const char* help, float value);
MOX_API boost::shared_ptr<GuiProperty> DeclareColour(GuiNode& node, const char* name,
                                                     const char* help, float red, float green,
                                                     float blue);

/// The words in display order, at least one and each once; the first one is the default.
MOX_API boost::shared_ptr<GuiProperty>
DeclareEnum(GuiNode& node, const char* name, const char* help, std::span<const char* const> words);

/// An empty reference to a node of the given type.
MOX_API boost::shared_ptr<GuiProperty> DeclareNode(GuiNode& node, const char* name,
                                                   const char* help, const char* typeName);

/// Tables of settings that an enum property chooses from: each row has its word in a field Name,
/// and the words in table order are the property's choices.

template <class Row, std::size_t Count>
constexpr std::array<const char*, Count> NamesOf(const Row (&rows)[Count])
{
    std::array<const char*, Count> names{};
    for (std::size_t i = 0; i < Count; ++i)
        names[i] = rows[i].Name;
    return names;
}

/// The row of a word. The property takes none but the words of the table; should a host have
/// written another one past the setters, the last row answers.
template <class Row, std::size_t Count>
const Row& RowNamed(const Row (&rows)[Count], const std::string& name)
{
    for (const Row& row : rows) {
        if (name == row.Name)
            return row;
    }
    return rows[Count - 1];
}

/// The number of components that a property chooses for a vector.
/// @throws ShaderError if it is not between 2 and 4
MOX_API std::int32_t GetVectorCount(const GuiProperty& property);

} // namespace Mox::Materials
