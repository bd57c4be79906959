#include "plugins/core/CoreDefaultNode.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <limits>

using namespace Mox::Materials;

const char* CoreDefaultNode::TypeName()
{
    return "CoreDefault";
}

CoreDefaultNode::CoreDefaultNode() : GuiNode(TypeName())
{
    SetName("Default");
    SetBackgroundColour(1.0f, 1.0f, 1.0f);
    SetForegroundColour(1.0f, 0.0f, 0.0f);
    Properties->Version = std::numeric_limits<std::int32_t>::max();
}

std::string CoreDefaultNode::GetTitle()
{
    return GetName() + "?";
}

void CoreDefaultNode::GenerateShader(ShaderGraphGenerator&)
{
    throw ShaderError(
        Compose("cannot export as the node \"", GetName(),
                "\" cannot be properly created. Please either get the DLL that can load this node "
                "or replace with alternatives."));
}

void CoreDefaultNode::LoadProperties(const boost::shared_ptr<GuiPropertyBag>& stored)
{
    GuiNode::LoadProperties(stored);
    Description->SetString(
        Compose("This node has been created as a placeholder because a node of type \"", GetType(),
                "\" could not be created. You need to either reload this material using the "
                "correct plug-in DLLs or replace this node with alternatives."));
}
