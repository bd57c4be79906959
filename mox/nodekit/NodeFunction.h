#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiNode.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"

#include <functional>

namespace Mox::Materials {

/// The steps by which a node becomes one Cg function, in the order in which they are called:
/// inputs, outputs, the node's own text, AddFunction. Until the last one nothing has reached the
/// generator, so a failure leaves it as it was.

/// The value of an input without an edge; may throw if the input must have one.
using UnconnectedValue = std::function<float(const GuiPort&)>;

/// Connected inputs become parameters. The others become local constants of the same name, so that
/// the body reads the same whether an edge exists or not.
/// @throws ShaderError if a port is not resolved
MOX_API void AddInputs(ShaderFunctionBuilder& builder, const GuiNode& node,
                       const UnconnectedValue& value);

/// Inputs without an edge read as zero.
MOX_API void AddInputs(ShaderFunctionBuilder& builder, const GuiNode& node);

/// Every output becomes a parameter, connected or not.
MOX_API void AddOutputs(ShaderFunctionBuilder& builder, const GuiNode& node);

/// Builds the function, enters it in the generator and lets the node's edges end on it.
MOX_API void AddFunction(ShaderGraphGenerator& generator, GuiNode& node,
                         const ShaderFunctionBuilder& builder, ShaderLevel level, const char* name);

/// The type that the node has resolved to.
MOX_API ShaderType NodeType(const GuiNode& node);

} // namespace Mox::Materials
