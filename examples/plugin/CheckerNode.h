#pragma once

#include <mox/authoring/GuiNode.h>

/// A chequered plane: 0 and 1 by turns along both texture coordinates.
class CheckerNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CheckerNode();

    void GenerateShader(ShaderGraphGenerator& generator) override;

    boost::shared_ptr<Mox::Materials::GuiProperty> Squares;
};
