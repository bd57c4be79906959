#include "GuiNodeFactoryChecker.h"

#include "CheckerNode.h"

#include <mox/ShaderError.h>
#include <mox/Text.h>

using namespace Mox::Materials;

GuiNodeFactoryChecker::GuiNodeFactoryChecker()
{
    GuiNodeDescription row(CheckerNode::TypeName());
    row.Library = "Checker";
    row.Label = "Checker";
    Descriptions.push_back(row);
}

boost::shared_ptr<GuiNode> GuiNodeFactoryChecker::Create(const std::string& typeName)
{
    if (typeName == CheckerNode::TypeName())
        return boost::shared_ptr<GuiNode>(new CheckerNode);
    throw ShaderError(Compose("cannot create \"", typeName, "\" node"));
}
