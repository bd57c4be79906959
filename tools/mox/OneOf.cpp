#include "OneOf.h"

#include "mox/host/Excerpt.h"
#include "mox/host/NearestName.h"

#include <algorithm>
#include <utility>

namespace Mox::Tool {

CLI::Validator OneOf(std::vector<std::string> words)
{
    const std::string listed = "{" + CLI::detail::join(words, ",") + "}";
    const auto check = [words = std::move(words)](const std::string& word) -> std::string {
        if (std::ranges::count(words, word) > 0)
            return {};
        std::vector<Host::RightName> names;
        for (const std::string& right : words)
            names.push_back({right});
        return Host::Excerpt(word) + " is not a valid value" + Host::SuggestName(word, names);
    };
    return {check, listed};
}

} // namespace Mox::Tool
