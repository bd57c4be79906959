#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/shader/ShaderEdge.h"

/// The end of a material: what arrives at its inputs is what the host shades. Each connected input
/// writes the interface parameter of its name; what nobody writes keeps the host's default.
class SurfaceNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    SurfaceNode();

    /// @throws ShaderError if another node has written one of the parameters before
    void GenerateShader(ShaderGraphGenerator& generator) override;

private:
    void RecordHeads(ShaderGraphGenerator& generator, const std::string& inputPort,
                     const ShaderNodeHandle& parameter);
};
