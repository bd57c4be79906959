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

enum class PictureFormat
{
    Svg, ///< one file that holds its images
    Png,
};

/// Lays a picture out and draws it. Graphviz runs as a program of its own: its library keeps every
/// image that it has read under the name of its file for good, is not made for threads, and a graph
/// too large for it would take the host along.
/// @returns the bytes of the file
/// @throws HostError if Graphviz is missing, fails, or is not done within two minutes
std::string RenderPicture(const Drawing& drawing, PictureFormat format);

} // namespace Mox::Host
