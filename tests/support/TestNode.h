#pragma once

#include "mox/authoring/GuiNode.h"

/// A node without ports and without a shader.
class TestNode : public Mox::Materials::GuiNode
{
public:
    explicit TestNode(const std::string& typeName) : GuiNode(typeName) {}
    void GenerateShader(ShaderGraphGenerator&) override {}
};
