#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/program/Environment.h"
#include "mox/shader/InterfaceNodeProvider.h"
#include "mox/shader/ShaderGraph.h"

namespace Mox::Host {

/// What a body of the environment assigns its result to.
inline constexpr const char* environmentOutput = "out_value";

/// The statement that gives a body the value of an input that nothing supplies.
/// @param expression in Cg
std::string FormatLocal(const EnvironmentInput& input, const std::string& expression);

/// Lets nodes find the environment's values by name, with flags 0. What a node finds is a bare
/// parameter: it is fed by CompleteShaderGraph, when it is known what the material writes.
class EnvironmentProvider : public InterfaceNodeProvider
{
public:
    /// @param environment is kept by reference
    explicit EnvironmentProvider(const Environment& environment);

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                          ShaderGraph& graph) override;

private:
    const Environment& _environment;
};

/// Feeds every value of the environment that the graph asks for, and adds the outputs, which take
/// what the material writes.
/// @param state the material's render state, which conditions read
/// @throws HostError with file and line of the environment if an entry needs what nobody supplies
void CompleteShaderGraph(const Environment& environment, const std::vector<DocumentValue>& state,
                         ShaderGraph& graph);

} // namespace Mox::Host
