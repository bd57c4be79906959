#pragma once

#include "mox/authoring/GuiNode.h"

/// The placeholder for a node whose own type cannot be created. It keeps the standard properties of
/// that node, reports what is missing and refuses to export.
class CoreDefaultNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreDefaultNode();

    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;

    /// Copies the standard properties, including "Type", from a set of any version, and replaces
    /// the description with an explanation.
    void LoadProperties(const boost::shared_ptr<Mox::Materials::GuiPropertyBag>& stored) override;
};
