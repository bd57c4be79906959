#pragma once

#include "mox/authoring/GuiNode.h"

/// Computes the uv coordinates of two consecutive frames in a grid of frames from a frame number,
/// and the factor to blend them.
class CoreAnimatedUvNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreAnimatedUvNode();
    ~CoreAnimatedUvNode() override;

    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;
    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> Columns;
    boost::shared_ptr<Mox::Materials::GuiProperty> Rows;
    boost::shared_ptr<Mox::Materials::GuiProperty> Mode;
    boost::shared_ptr<Mox::Materials::GuiProperty> ExecutionLevel;
};
