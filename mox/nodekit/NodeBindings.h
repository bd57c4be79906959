#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/Material.h"

namespace Mox::Materials {

/// Copies what the user wrote on a node about its binding: description, group and help url.
MOX_API void CopyBindingTexts(const GuiNode& node, Binding& binding);

/// Adds the binding of a vertex stream under the node's name, without a value: which stream of a
/// mesh it is, the host fills in.
MOX_API void AddStreamBinding(const GuiNode& node, StreamType streamType, Material& material);

} // namespace Mox::Materials
