#pragma once

#include "mox/authoring/GuiNode.h"

/// Stands in a material for a node whose own type cannot be created. It keeps the standard
/// properties of the lost node, says what is missing and refuses to export.
class CoreDefaultNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreDefaultNode();

    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;

    /// Takes over the standard properties, "Type" included, of a set of any version, and puts an
    /// explanation in the place of the description.
    void LoadProperties(const boost::shared_ptr<Mox::Materials::GuiPropertyBag>& stored) override;
};
