#pragma once

#include "mox/host/HostError.h"

#include <map>
#include <string>
#include <string_view>

namespace Mox::Host {

/// A text that is put together from parts of files, and knows from where each line is.
class PlacedText
{
public:
    /// Adds whole lines.
    /// @param where the first line is from
    void Append(std::string_view text, const Place& where);

    const std::string& Text() const { return _text; }

    /// The place that a line is from.
    /// @param line 1-based
    Place PlaceOf(int line) const;

private:
    std::string _text;
    int _lineCount = 0;
    std::map<int, Place> _parts; ///< by the number of their first line
};

} // namespace Mox::Host
