#include "mox/graph/HostValues.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <vector>

namespace Mox::Host {

namespace {

const std::string hostValues[] = {"BindingIndex", positionX, positionY};

std::vector<const DocumentProperty*> OtherProperties(const DocumentNode& record)
{
    std::vector<const DocumentProperty*> others;
    for (const DocumentProperty& property : record.Properties) {
        if (!IsHostValue(property.Name))
            others.push_back(&property);
    }
    return others;
}

} // namespace

bool IsHostValue(const std::string& property)
{
    return std::find(std::begin(hostValues), std::end(hostValues), property) !=
           std::end(hostValues);
}

bool AreSameButForHostValues(const DocumentNode& left, const DocumentNode& right)
{
    if (std::tie(left.Id, left.Type, left.Version) != std::tie(right.Id, right.Type, right.Version))
        return false;
    const auto lefts = OtherProperties(left);
    const auto rights = OtherProperties(right);
    return std::equal(lefts.begin(), lefts.end(), rights.begin(), rights.end(),
                      [](const DocumentProperty* one, const DocumentProperty* other) {
                          return std::tie(one->Name, one->Kind, one->Value) ==
                                 std::tie(other->Name, other->Kind, other->Value);
                      });
}

void CopyHostValues(const PluginNode& from, const PluginNode& to) noexcept
{
    for (const std::string& name : hostValues) {
        const auto source = from.Properties().Index.find(name);
        const auto target = to.Properties().Index.find(name);
        if (source == from.Properties().Index.end() || target == to.Properties().Index.end())
            continue;
        target->second->Integer = source->second->Integer;
        std::copy(std::begin(source->second->Floats), std::end(source->second->Floats),
                  std::begin(target->second->Floats));
    }
}

} // namespace Mox::Host
