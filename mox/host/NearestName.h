#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// A name that would be right, and what people call it.
struct RightName
{
    std::string Name;
    std::string Label = {};
};

/// What follows the message that there is no such name: the one that is most like it, by its name
/// or its label, if it is alike at all, and the others if they are few. Empty if there is nothing
/// to tell.
std::string SuggestName(std::string_view name, const std::vector<RightName>& names);

} // namespace Mox::Host
