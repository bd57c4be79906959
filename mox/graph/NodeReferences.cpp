#include "mox/graph/NodeReferences.h"

namespace Mox::Host {

void NodeReferences::Set(std::size_t referrer, const std::vector<std::size_t>& targets)
{
    const std::vector<std::size_t> old = Targets(referrer);
    if (targets == old)
        return;
    for (const std::size_t target : old)
        _referrers.erase({target, referrer});
    for (const std::size_t target : targets)
        _referrers.emplace(target, referrer);
    if (targets.empty())
        _targets.erase(referrer);
    else
        _targets[referrer] = targets;
}

const std::vector<std::size_t>& NodeReferences::Targets(std::size_t referrer) const
{
    static const std::vector<std::size_t> none;
    const auto entry = _targets.find(referrer);
    return entry == _targets.end() ? none : entry->second;
}

std::vector<std::size_t> NodeReferences::Referrers(std::size_t target) const
{
    std::vector<std::size_t> referrers;
    for (auto entry = _referrers.lower_bound({target, 0});
         entry != _referrers.end() && entry->first == target; ++entry)
        referrers.push_back(entry->second);
    return referrers;
}

} // namespace Mox::Host
