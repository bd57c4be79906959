#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginNode.h"
#include "mox/program/Environment.h"

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

/// The part of a document that a node hangs on, the node included, so that a picture of the node
/// stands though the rest may be broken.
MaterialDocument CutUpstream(const MaterialDocument& document, const std::string& node);

/// The end of a material that shows what a node puts out: hands it as a colour to the environment
/// of MakeProbeEnvironment. One component becomes grey, two red and green, and of four the first
/// three count.
struct NodeProbe
{
    static const char* TypeName();
    static const char* PortName(); ///< of the one input

    static PluginNode Create(const Place& where);
};

/// An environment in which a surface has the colour of a probe, without any light.
Environment MakeProbeEnvironment(Environment environment);

} // namespace Mox::Host
