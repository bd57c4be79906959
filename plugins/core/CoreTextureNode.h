#pragma once

#include "mox/authoring/GuiNode.h"

/// Samples a texture at a coordinate. A node that references another texture node shares its name,
/// settings and binding, so that a texture can be sampled at several coordinates.
class CoreTextureNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreTextureNode();
    ~CoreTextureNode() override;

    /// Copies the settings of the node that Reference refers to, as far as that node has been
    /// updated.
    /// @throws ShaderError if that node is a placeholder; the node then has no ports
    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;
    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;
    bool HasBinding() override;
    void CreateBindings(const boost::shared_ptr<Mox::Materials::Material>& material) override;

    /// Returns the name of the texture node at the end of the chain of references.
    /// @throws ShaderError if the chain contains a cycle or leads to a placeholder
    std::string GetBindingName();

    /// Whether the fourth component is read: the colour type includes it, or "Alpha" is true and
    /// the port "out_alpha" exists and is connected.
    bool IsAlphaUsed();

    using PropertyHandle = boost::shared_ptr<Mox::Materials::GuiProperty>;

    PropertyHandle Reference;
    PropertyHandle TextureType;
    PropertyHandle ColourType;
    PropertyHandle Alpha;
    PropertyHandle Srgb;
    PropertyHandle BasicColour;
};
