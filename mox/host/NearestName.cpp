#include "mox/host/NearestName.h"

#include "mox/LetterCase.h"
#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::ToLower;

/// Returns the number of letters to change, add or remove. If the lengths differ by more than most,
/// returns only this difference.
std::size_t EditDistance(std::string_view a, std::string_view b, std::size_t most)
{
    const std::size_t difference = std::max(a.size(), b.size()) - std::min(a.size(), b.size());
    if (difference > most)
        return difference;
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t(0));
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, changed});
        }
    }
    return row.back();
}

/// Removes "in_" or "out_" from the name of a port, because its label does not have this prefix.
std::string_view WithoutDirection(std::string_view name)
{
    for (const std::string_view prefix : {"in_", "out_"}) {
        if (name.starts_with(prefix))
            return name.substr(prefix.size());
    }
    return name;
}

std::string Show(const RightName& name)
{
    const bool hasLabel =
        !name.Label.empty() && name.Label != name.Name && name.Label != WithoutDirection(name.Name);
    return Excerpt(name.Name) + (hasLabel ? Compose(" (", MessageLine(name.Label), ")") : "");
}

} // namespace

std::string SuggestName(std::string_view name, const std::vector<RightName>& names)
{
    constexpr std::size_t longestName = 100; // longer names are not typing errors
    constexpr std::size_t mostListed = 12;
    if (names.empty() || name.size() > longestName)
        return {};
    constexpr std::size_t longEnough = 4; // to recognise the name as a prefix of another name
    const std::size_t mostErrors = std::max<std::size_t>(2, name.size() / 3);
    const std::string wanted = ToLower(name);
    const auto distance = [&](std::string_view from, std::string_view to) {
        return EditDistance(from, ToLower(to.substr(0, longestName)), mostErrors);
    };
    const auto distanceTo = [&](const RightName& right) {
        if (name.size() >= longEnough && right.Name.starts_with(name))
            return std::size_t(1);
        const std::size_t toName = distance(wanted, right.Name);
        return right.Label.empty()
                   ? toName
                   : std::min(toName, distance(WithoutDirection(wanted), right.Label));
    };
    std::vector<std::size_t> distances;
    distances.reserve(names.size());
    for (const RightName& right : names)
        distances.push_back(distanceTo(right));
    const auto nearest = std::min_element(distances.begin(), distances.end());
    const auto best = static_cast<std::size_t>(nearest - distances.begin());
    const bool isAlike = *nearest < name.size() && *nearest <= mostErrors;

    std::string text;
    if (isAlike)
        text = Compose("; did you mean ", Show(names[best]), "?");
    std::string others;
    for (std::size_t i = 0; i < names.size() && names.size() <= mostListed; ++i) {
        if (!isAlike || i != best)
            others += (others.empty() ? "" : ", ") + Show(names[i]);
    }
    if (!others.empty())
        text += Compose(isAlike ? " Also available: " : "; available: ", others);
    return text;
}

} // namespace Mox::Host
