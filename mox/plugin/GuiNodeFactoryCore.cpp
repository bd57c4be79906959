#include "mox/plugin/GuiNodeFactoryCore.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/nodes/CoreAnimatedUvNode.h"
#include "mox/nodes/CoreConstantNode.h"
#include "mox/nodes/CoreLayerBlendNode.h"
#include "mox/nodes/CoreMathsNode.h"
#include "mox/nodes/CoreSwizzleNode.h"
#include "mox/nodes/CoreTextureNode.h"
#include "mox/nodes/CoreUvNode.h"
#include "mox/nodes/CoreVertexColourNode.h"
#include "mox/plugin/CoreDefaultNode.h"
#include "mox/plugin/icons/CoreAnimatedUv.xpm"
#include "mox/plugin/icons/CoreConstant.xpm"
#include "mox/plugin/icons/CoreLayerBlend.xpm"
#include "mox/plugin/icons/CoreMaths.xpm"
#include "mox/plugin/icons/CoreSwizzle.xpm"
#include "mox/plugin/icons/CoreTexture.xpm"
#include "mox/plugin/icons/CoreUv.xpm"
#include "mox/plugin/icons/CoreVertexColour.xpm"

#include <boost/smart_ptr/make_shared.hpp>

#include <iterator>

using namespace Mox::Materials;

namespace {

struct CatalogueRow
{
    const char* (*TypeName)();
    boost::shared_ptr<GuiNode> (*Create)();
    const char* Label;
    const char* const* Icon;
    bool Listed = true;
};

template <class Node>
boost::shared_ptr<GuiNode> CreateNode()
{
    return boost::make_shared<Node>();
}

template <class Node>
constexpr CatalogueRow Row(const char* label, const char* const* icon, bool listed = true)
{
    return {&Node::TypeName, &CreateNode<Node>, label, icon, listed};
}

constexpr CatalogueRow catalogue[] = {
    Row<CoreDefaultNode>("Default", nullptr, false),
    Row<CoreVertexColourNode>("Vertex Colour Set", CoreVertexColour_xpm),
    Row<CoreUvNode>("Uv Set", CoreUv_xpm),
    Row<CoreTextureNode>("Texture", CoreTexture_xpm),
    Row<CoreConstantNode>("Constant", CoreConstant_xpm),
    Row<CoreMathsNode>("Maths", CoreMaths_xpm),
    Row<CoreSwizzleNode>("Swizzle", CoreSwizzle_xpm),
    Row<CoreLayerBlendNode>("Layer Blend", CoreLayerBlend_xpm),
    Row<CoreAnimatedUvNode>("Animated Uv", CoreAnimatedUv_xpm),
};

} // namespace

GuiNodeFactoryCore::GuiNodeFactoryCore()
{
    Descriptions.reserve(std::size(catalogue));
    for (const CatalogueRow& row : catalogue) {
        GuiNodeDescription description(row.TypeName());
        description.Library = "Core";
        description.Label = row.Label;
        description.Listed = row.Listed;
        description.Icon = row.Icon;
        Descriptions.push_back(description);
    }
}

boost::shared_ptr<GuiNode> GuiNodeFactoryCore::Create(const std::string& typeName)
{
    for (const CatalogueRow& row : catalogue) {
        if (typeName == row.TypeName())
            return row.Create();
    }
    throw ShaderError(Compose("cannot create \"", typeName, "\" node"));
}
