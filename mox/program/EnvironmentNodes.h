#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/program/Environment.h"
#include "mox/shader/InterfaceNodeProvider.h"
#include "mox/shader/ShaderGraph.h"

namespace Mox::Host {

/// The variable that a body of the environment assigns its result to.
inline constexpr const char* environmentOutput = "out_value";

/// Formats a statement that declares an input as a local variable, for an input that no source
/// provides.
/// @param expression initial value, in Cg
std::string FormatLocal(const EnvironmentInput& input, const std::string& expression);

/// Provides the environment's values to nodes by name, with flags 0. A node receives a parameter
/// without a source; CompleteShaderGraph connects it once it is known what the material writes.
class EnvironmentProvider : public InterfaceNodeProvider
{
public:
    /// @param environment must outlive this object
    explicit EnvironmentProvider(const Environment& environment);

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                          ShaderGraph& graph) override;

private:
    const Environment& _environment;
};

/// Connects every environment value that the graph reads, and adds the outputs, which read what the
/// material writes.
/// @param state the material's render state, which conditions test
/// @throws HostError with file and line in the environment if an entry needs a value that no source
///        provides
void CompleteShaderGraph(const Environment& environment, const std::vector<DocumentValue>& state,
                         ShaderGraph& graph);

} // namespace Mox::Host
