#include "mox/host/NodeFragment.h"

#include "mox/host/PropertyText.h"
#include "mox/host/XmlWriter.h"

namespace Mox::Host {

std::string FormatNodeFragment(const Materials::GuiNode& node, const std::string& id)
{
    XmlWriter writer;
    writer.StartElement("node");
    writer.Attribute("id", id);
    writer.Attribute("type", node.GetType());
    writer.Attribute("version", std::to_string(node.Properties->Version));
    for (const auto& property : node.Properties->Properties) {
        if (property == node.Type)
            continue; // the element's attribute says it
        writer.StartElement("property");
        writer.Attribute("name", property->Name);
        writer.Attribute("kind", std::string(FormatKind(property->Kind)));
        writer.Attribute("value", FormatValue(*property));
        writer.EndElement();
    }
    writer.EndElement();
    return writer.Finish();
}

} // namespace Mox::Host
