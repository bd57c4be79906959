#pragma once

#include "mox/authoring/GuiNode.h"

/// Hands a material a value for each vertex, so that no compiler can know it beforehand. The stream
/// is named like the node.
class FeedNode : public Mox::Materials::GuiNode
{
public:
    /// A value of this many components, as precise as its readers want it.
    explicit FeedNode(std::int32_t count);

    /// A value of just this type. What is no float is made of floats by a cast.
    explicit FeedNode(const ShaderType& type);

    void GenerateShader(ShaderGraphGenerator& generator) override;
};
