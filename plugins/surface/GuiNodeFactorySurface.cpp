#include "plugins/surface/GuiNodeFactorySurface.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "plugins/surface/SurfaceNode.h"
#include "plugins/surface/SurfaceSourceNode.h"

using namespace Mox::Materials;

namespace {

GuiNodeDescription CatalogueRow(const char* typeName, const char* label, const char* const* icon)
{
    GuiNodeDescription row(typeName);
    row.Library = "Surface";
    row.Label = label;
    row.Icon = icon;
    return row;
}

} // namespace

GuiNodeFactorySurface::GuiNodeFactorySurface()
{
    for (const SurfaceKind& kind : SurfaceNode::Kinds())
        Descriptions.push_back(CatalogueRow(kind.TypeName, kind.Label, kind.Icon));
    for (const SurfaceSource& source : SurfaceSourceNode::Sources())
        Descriptions.push_back(CatalogueRow(source.TypeName, source.Label, source.Icon));
}

boost::shared_ptr<GuiNode> GuiNodeFactorySurface::Create(const std::string& typeName)
{
    for (const SurfaceKind& kind : SurfaceNode::Kinds()) {
        if (typeName == kind.TypeName)
            return boost::shared_ptr<GuiNode>(new SurfaceNode(kind));
    }
    for (const SurfaceSource& source : SurfaceSourceNode::Sources()) {
        if (typeName == source.TypeName)
            return boost::shared_ptr<GuiNode>(new SurfaceSourceNode(source));
    }
    throw ShaderError(Compose("cannot create \"", typeName, "\" node"));
}
