#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginNode.h"
#include "mox/program/Environment.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Host {

/// One output of a node. An empty port means the first one.
struct ProbedOutput
{
    std::string Node;
    std::string Port;
};

/// Parses "id" or "id.port". Since ids may contain dots, the whole string is tried as an id first.
/// @throws HostError if the document has no such node
ProbedOutput FindNodeOutput(const MaterialDocument& document, const std::string& text);

/// Returns the part of a document that the given nodes depend on, including the nodes, so that they
/// can be rendered even if the rest has errors.
MaterialDocument CutUpstream(const MaterialDocument& document,
                             const std::vector<ProbedOutput>& nodes);

/// An output node that shows the output of another node: passes it as a colour to the environment
/// of MakeProbeEnvironment. One component becomes grey, two become red and green, and the fourth of
/// four is ignored. The probes of a material are numbered from 0.
struct NodeProbe
{
    static std::string TypeName(std::size_t number);
    static const char* PortName();      ///< of the only input
    static const char* ChoiceUniform(); ///< uniform with the number of the probe to show

    /// @returns an empty handle if the type is not that of a probe
    static PluginNode Create(const std::string& type, const Place& where);
};

/// Returns an environment that shows the colour of one of its probes, unlit.
Environment MakeProbeEnvironment(Environment environment, std::size_t probes);

} // namespace Mox::Host
