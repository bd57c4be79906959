#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <span>

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

/// The words in display order; the first one is the default.
MOX_API boost::shared_ptr<GuiProperty>
DeclareEnum(GuiNode& node, const char* name, const char* help, std::span<const char* const> words);

/// An empty reference to a node of the given type.
MOX_API boost::shared_ptr<GuiProperty> DeclareNode(GuiNode& node, const char* name,
                                                   const char* help, const char* typeName);

} // namespace Mox::Materials
