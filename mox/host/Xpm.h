#pragma once

#include "mox/host/Picture.h"

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The rows of an XPM image: header, colours, pixels.
using XpmTable = std::vector<std::string>;

/// Copies the icon of a catalogue row and checks that it can be decoded: it must have a header of
/// four numbers, all rows that the header declares, a colour in each colour row, and pixel rows of
/// the full width. The length of the table is unknown here, so if a table has fewer rows than
/// declared and is not null-terminated, it is read out of bounds.
/// @throws HostError naming the invalid row
XpmTable CopyXpm(const char* const* table);

/// Parses the C source of an XPM image. Only its strings are read, so a variable around them can be
/// left out; a string cannot contain escape sequences.
/// @returns the strings, which DecodeXpm accepts
/// @throws HostError as DecodeXpm does, or if a string is not closed on its line
XpmTable ParseXpm(std::string_view source);

/// Decodes the pixels of an icon. Colours are "None" or "#RRGGBB"; a colour name is treated as
/// "None".
/// @throws HostError as CopyXpm does, or if a pixel uses a key that the table does not define
Picture DecodeXpm(const XpmTable& table);

} // namespace Mox::Host
