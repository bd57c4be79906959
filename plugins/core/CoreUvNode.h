#pragma once

#include "mox/authoring/GuiNode.h"

/// A uv set of the mesh: a varying parameter and a binding, both under the node's name.
class CoreUvNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreUvNode();
    ~CoreUvNode() override;

    void GenerateShader(ShaderGraphGenerator& generator) override;
    bool HasBinding() override;
    void CreateBindings(const boost::shared_ptr<Mox::Materials::Material>& material) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> Primary; ///< used only by the host
};
