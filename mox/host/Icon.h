#pragma once

#include "mox/host/Picture.h"

namespace Mox::Host {

/// Decodes an XPM table such as stands in a catalogue row. The table must be well-formed: its
/// length is not known here.
/// @throws HostError if it cannot be decoded
Picture DecodeXpm(const char* const* table);

} // namespace Mox::Host
