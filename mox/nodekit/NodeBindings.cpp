#include "mox/nodekit/NodeBindings.h"

namespace Mox::Materials {

void CopyBindingTexts(const GuiNode& node, Binding& binding)
{
    binding.desc = node.Description->GetString();
    binding.group = node.BindingGroup->GetString();
    binding.helpUrl = node.HelpUrl->GetString();
}

void AddStreamBinding(const GuiNode& node, StreamType streamType, Material& material)
{
    const boost::shared_ptr<Binding> binding = CreateBinding(streamType, node.GetName(), 1);
    CopyBindingTexts(node, *binding);
    material.AddBinding(binding);
}

} // namespace Mox::Materials
