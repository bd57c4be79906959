#pragma once

#include "mox/authoring/GuiNode.h"

/// Supplies a value per vertex to a material, so that no compiler can evaluate it in advance. The
/// stream has the name of the node.
class FeedNode : public Mox::Materials::GuiNode
{
public:
    /// A value with this number of components and the precision that its readers request.
    explicit FeedNode(std::int32_t count);

    /// A value of exactly this type; types other than float are converted from floats by a cast.
    explicit FeedNode(const ShaderType& type);

    void GenerateShader(ShaderGraphGenerator& generator) override;
};
