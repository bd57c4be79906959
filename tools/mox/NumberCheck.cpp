#include "NumberCheck.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Excerpt.h"

#include <cmath>

namespace Mox::Tool {

using Materials::Compose;

CLI::Validator FiniteNumber()
{
    const auto check = [](const std::string& word) -> std::string {
        const auto number = Host::ParseFloat(word);
        if (number && std::isfinite(*number))
            return {};
        return Compose(Host::Excerpt(word), " is not a valid number");
    };
    return {check, ""};
}

CLI::Validator IntegerIn(std::int32_t lowest, std::int32_t highest)
{
    const auto check = [lowest, highest](std::string& word) -> std::string {
        const auto number = Host::ParseInteger(word);
        if (!number || *number < lowest || *number > highest) {
            return Compose(Host::Excerpt(word), " is not an integer from ", lowest, " to ",
                           highest);
        }
        word = std::to_string(*number);
        return {};
    };
    return {check, ""};
}

} // namespace Mox::Tool
