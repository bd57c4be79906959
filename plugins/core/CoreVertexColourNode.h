#pragma once

#include "mox/authoring/GuiNode.h"

/// A vertex colour set of the mesh: a varying parameter, a binding of the same name, and a function
/// that splits the stream into the outputs.
class CoreVertexColourNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreVertexColourNode();
    ~CoreVertexColourNode() override;

    /// Sets "Alpha" and makes it read-only for a vector; the value remains when the type changes
    /// again.
    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;
    void GenerateShader(ShaderGraphGenerator& generator) override;
    bool HasBinding() override;
    void CreateBindings(const boost::shared_ptr<Mox::Materials::Material>& material) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> ColourType;
    boost::shared_ptr<Mox::Materials::GuiProperty> Alpha;
};
