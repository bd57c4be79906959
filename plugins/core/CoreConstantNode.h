#pragma once

#include "mox/authoring/GuiNode.h"

/// A constant value: a binding with its uniform parameter or, if locked, literals in a function.
class CoreConstantNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreConstantNode();
    ~CoreConstantNode() override;

    /// @throws ShaderError if a vector has a count outside 2 to 4; the node then has no ports, and
    ///        the visibility of the properties does not change
    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;
    void GenerateShader(ShaderGraphGenerator& generator) override;
    bool HasBinding() override;

    /// @throws ShaderError if a vector has a count of 0 or less
    void CreateBindings(const boost::shared_ptr<Mox::Materials::Material>& material) override;

    using PropertyHandle = boost::shared_ptr<Mox::Materials::GuiProperty>;

    PropertyHandle ConstantType;
    PropertyHandle VectorComponentCount;
    PropertyHandle DefaultColour;
    PropertyHandle MinScalar;
    PropertyHandle MaxScalar;
    PropertyHandle DefaultScalar;
    PropertyHandle Alpha;
    PropertyHandle DefaultAlpha;
    PropertyHandle Lock;
    PropertyHandle BasicColour;

private:
    bool IsColour() const;

    /// Whether alpha is read; otherwise the constant needs no fourth component.
    bool IsAlphaUsed();

    void GenerateLocked(ShaderGraphGenerator& generator);
    void GenerateUniform(ShaderGraphGenerator& generator);
    void GenerateSplitUniform(ShaderGraphGenerator& generator);

    /// Registers the start of the node's edges with a function, whose output for the port "read"
    /// has a different name.
    void RecordTails(ShaderGraphGenerator& generator, const boost::shared_ptr<ShaderNode>& function,
                     const char* readName);
};
