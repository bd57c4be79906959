#pragma once

#include "mox/authoring/GuiNode.h"

/// The end of a material under test: writes what reaches "in_0" to "in_3" one behind the other into
/// the value "numbers" of the environment, and zeros behind that. What a fifth number would be is
/// cut off.
class SinkNode : public Mox::Materials::GuiNode
{
public:
    /// Inputs of a precision, which take what count comes.
    explicit SinkNode(ComponentType precision);

    /// Inputs of just this type.
    explicit SinkNode(const ShaderType& type);

    void ResolveComponentCounts() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;
};
