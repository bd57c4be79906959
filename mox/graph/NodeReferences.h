#pragma once

#include <cstddef>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Which nodes refer to which others through their properties.
class NodeReferences
{
public:
    /// Replaces all that a node refers to.
    void Set(std::size_t referrer, const std::vector<std::size_t>& targets);

    const std::vector<std::size_t>& Targets(std::size_t referrer) const;

    /// In growing order, each once.
    std::vector<std::size_t> Referrers(std::size_t target) const;

private:
    std::unordered_map<std::size_t, std::vector<std::size_t>> _targets;
    std::set<std::pair<std::size_t, std::size_t>> _referrers; ///< target, referrer
};

} // namespace Mox::Host
