#include "plugins/core/GuiNodeFactoryCore.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "plugins/core/CoreAnimatedUvNode.h"
#include "plugins/core/CoreConstantNode.h"
#include "plugins/core/CoreDefaultNode.h"
#include "plugins/core/CoreLayerBlendNode.h"
#include "plugins/core/CoreMathsNode.h"
#include "plugins/core/CoreSwizzleNode.h"
#include "plugins/core/CoreTextureNode.h"
#include "plugins/core/CoreUvNode.h"
#include "plugins/core/CoreVertexColourNode.h"
#include "plugins/core/icons/CoreAnimatedUv.xpm"
#include "plugins/core/icons/CoreConstant.xpm"
#include "plugins/core/icons/CoreLayerBlend.xpm"
#include "plugins/core/icons/CoreMaths.xpm"
#include "plugins/core/icons/CoreSwizzle.xpm"
#include "plugins/core/icons/CoreTexture.xpm"
#include "plugins/core/icons/CoreUv.xpm"
#include "plugins/core/icons/CoreVertexColour.xpm"

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
