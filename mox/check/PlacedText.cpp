#include "mox/check/PlacedText.h"

#include <algorithm>
#include <iterator>

namespace Mox::Host {

void PlacedText::Append(std::string_view text, const Place& where)
{
    if (text.empty())
        return;
    _parts.emplace(_lineCount + 1, where);
    const std::size_t begin = _text.size();
    _text += text;
    if (_text.back() != '\n')
        _text += '\n';
    const auto first = std::next(_text.begin(), static_cast<std::ptrdiff_t>(begin));
    _lineCount += static_cast<int>(std::count(first, _text.end(), '\n'));
}

Place PlacedText::PlaceOf(int line) const
{
    const auto next = _parts.upper_bound(line);
    if (next == _parts.begin())
        return {};
    const auto& [firstLine, where] = *std::prev(next);
    Place place = where;
    place.Line += std::min(line, _lineCount) - firstLine;
    return place;
}

} // namespace Mox::Host
