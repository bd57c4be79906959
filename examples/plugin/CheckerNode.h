#pragma once

#include <mox/authoring/GuiNode.h>

/// A checkerboard that alternates between 0 and 1 along both texture coordinates.
class CheckerNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CheckerNode();

    void GenerateShader(ShaderGraphGenerator& generator) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> Squares;
};
