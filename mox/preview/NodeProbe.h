#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginNode.h"
#include "mox/program/Environment.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Host {

/// One output of a node. An empty port is the first one.
struct ProbedOutput
{
    std::string Node;
    std::string Port;
};

/// Reads "id" or "id.port". Ids may hold dots themselves: the whole text is tried as an id first.
/// @throws HostError if the document has no such node
ProbedOutput FindNodeOutput(const MaterialDocument& document, const std::string& text);

/// The part of a document that nodes depend on, these included, so that there are pictures of the
/// nodes even if the rest is broken.
MaterialDocument CutUpstream(const MaterialDocument& document,
                             const std::vector<ProbedOutput>& nodes);

/// An end of a material that shows the output of a node: passes it as a colour to the environment
/// of MakeProbeEnvironment. One component becomes grey, two red and green, and of four the first
/// three count. The probes of a material have numbers from 0.
struct NodeProbe
{
    static std::string TypeName(std::size_t number);
    static const char* PortName();      ///< of the one input
    static const char* ChoiceUniform(); ///< number of the probe that is shown

    /// @returns an empty handle if this is the type of no probe
    static PluginNode Create(const std::string& type, const Place& where);
};

/// An environment in which a surface has the colour of one of its probes, without any light.
Environment MakeProbeEnvironment(Environment environment, std::size_t probes);

} // namespace Mox::Host
