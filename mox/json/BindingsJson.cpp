#include "mox/json/BindingsJson.h"

#include "mox/graph/BindingsDocument.h"
#include "mox/json/RecordJson.h"

#include <utility>

namespace Mox::Host {

std::string FormatBindingsAsJson(const std::vector<PluginBinding>& bindings)
{
    Json list = Json::array();
    for (const PluginBinding& binding : bindings) {
        Json object = ToJson(DescribeBinding(binding));
        object["count"] = binding.GetCount();
        if (!binding.Group().empty())
            object["group"] = binding.Group();
        list.push_back(std::move(object));
    }
    return FormatJsonLines({{"version", RecordJsonVersion}, {"bindings", std::move(list)}});
}

} // namespace Mox::Host
