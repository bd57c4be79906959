#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/host/MaterialDocument.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// One output of a node. An empty port is the first one.
struct NodeOutput
{
    std::string Node;
    std::string Port;
};

/// Reads "id" or "id.port". Ids may hold dots themselves: the whole text is tried as an id first.
/// @throws HostError if the document has no such node
NodeOutput FindNodeOutput(const MaterialDocument& document, const std::string& text);

/// The part of a document that a node hangs on, the node included, so that a picture of the node
/// stands though the rest may be broken.
MaterialDocument CutUpstream(const MaterialDocument& document, const std::string& node);

/// The end of a material that shows what a node puts out: hands the value that enters "write" to
/// the environment of MakeProbeEnvironment.
class NodeProbe : public Materials::GuiNode
{
public:
    NodeProbe();

    void GenerateShader(ShaderGraphGenerator& generator) override;
};

/// An environment in which a surface shows the value of a probe as colour, without any light: one
/// component as grey, two as red and green, and of four the first three.
/// @param count components of the value, 1 to 4
Environment MakeProbeEnvironment(Environment environment, std::int32_t count);

} // namespace Mox::Host
