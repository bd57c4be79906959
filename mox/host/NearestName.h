#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// A valid name and its label.
struct RightName
{
    std::string Name;
    std::string Label = {};
};

/// Returns a suggestion to append to an error message about an unknown name: the name whose
/// spelling or label is most similar, if any is similar enough, and the other names if there are
/// only a few. Returns an empty string if there is no suggestion.
std::string SuggestName(std::string_view name, const std::vector<RightName>& names);

} // namespace Mox::Host
