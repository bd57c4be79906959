#pragma once

#include "mox/authoring/GuiNode.h"

/// The end of a material under test. Writes the values at "in_0" to "in_3" one after another into
/// the value "numbers" of the environment, padded with zeros. Everything beyond the fourth
/// component is discarded.
class SinkNode : public Mox::Materials::GuiNode
{
public:
    /// Creates inputs of a precision that accept any component count.
    explicit SinkNode(ComponentType precision);

    /// Creates inputs of exactly this type.
    explicit SinkNode(const ShaderType& type);

    void ResolveComponentCounts() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;
};
