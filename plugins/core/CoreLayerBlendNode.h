#pragma once

#include "mox/authoring/GuiNode.h"

/// Combines two inputs with one of eleven layer blend modes. The mode affects only the body of the
/// Cg function; the ports never change.
class CoreLayerBlendNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreLayerBlendNode();
    ~CoreLayerBlendNode() override;

    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> Mode;
};
