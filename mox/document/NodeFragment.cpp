#include "mox/document/NodeFragment.h"

#include "mox/document/MaterialWriter.h"
#include "mox/document/PropertyText.h"

namespace Mox::Host {

std::string FormatNodeFragment(const PluginNode& node, const std::string& id)
{
    DocumentNode record;
    record.Id = id;
    record.Type = node.Type();
    record.Version = node.Properties().Version;
    for (const auto& property : node.Properties().Properties) {
        if (property != node.TypeProperty()) // which the element's attribute says
            record.Properties.push_back(
                {property->Name, property->Kind, FormatValue(*property), 0, {}});
    }
    MaterialWriter writer({});
    writer.WriteNode(record);
    return writer.Finish();
}

} // namespace Mox::Host
