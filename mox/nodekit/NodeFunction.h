#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <functional>

namespace Mox::Materials {

/// The steps by which a node becomes one Cg function. They are called in this order: inputs,
/// outputs, the node's own code, AddFunction. Only the last one changes the generator, so an
/// earlier failure leaves it unchanged.

/// Returns the value of an unconnected input; may throw if the input must be connected.
using UnconnectedValue = std::function<float(const GuiPort&)>;

/// Connected inputs become parameters. The others become local constants with the same name, so
/// that the body is the same whether or not an input is connected.
/// @throws ShaderError if a port is not resolved
MOX_API void AddInputs(ShaderFunctionBuilder& builder, const GuiNode& node,
                       const UnconnectedValue& value);

/// Unconnected inputs become zero.
MOX_API void AddInputs(ShaderFunctionBuilder& builder, const GuiNode& node);

/// Every output becomes a parameter, whether or not it is connected.
MOX_API void AddOutputs(ShaderFunctionBuilder& builder, const GuiNode& node);

/// Builds the function, adds it to the generator and registers the node's edges with it.
MOX_API void AddFunction(ShaderGraphGenerator& generator, GuiNode& node,
                         const ShaderFunctionBuilder& builder, ShaderLevel level, const char* name);

/// The type that the node was resolved to.
MOX_API ShaderType NodeType(const GuiNode& node);

} // namespace Mox::Materials
