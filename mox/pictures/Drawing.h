#pragma once

#include "mox/host/Picture.h"

#include <map>
#include <string>

namespace Mox::Host {

/// A drawing that is not laid out yet.
struct Drawing
{
    std::string Dot; ///< in the DOT language; the same graph gives the same text
    std::map<std::string, Picture> Images; ///< by the name of the PNG file that Dot shows
};

} // namespace Mox::Host
