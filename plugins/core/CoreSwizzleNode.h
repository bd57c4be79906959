#pragma once

#include "mox/authoring/GuiNode.h"

/// Splits a vector into one scalar port per component, or merges scalars into a vector.
class CoreSwizzleNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreSwizzleNode();
    ~CoreSwizzleNode() override;

    /// Also sets "Component Count", which the user can only choose for a general vector.
    /// @throws ShaderError if a general vector has a count outside 2 to 4; the node then has no
    ///        ports
    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;
    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> VectorType;
    boost::shared_ptr<Mox::Materials::GuiProperty> VectorComponentCount;
    boost::shared_ptr<Mox::Materials::GuiProperty> Reverse;
};
