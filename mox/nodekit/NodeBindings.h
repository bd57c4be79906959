#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/Material.h"

namespace Mox::Materials {

/// Copies the user's description, group and help URL from a node to its binding.
MOX_API void CopyBindingTexts(const GuiNode& node, Binding& binding);

/// Adds a binding for a vertex stream under the node's name, without a value: the host chooses the
/// stream of the mesh.
MOX_API void AddStreamBinding(const GuiNode& node, StreamType streamType, Material& material);

} // namespace Mox::Materials
