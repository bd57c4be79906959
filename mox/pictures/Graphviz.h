#pragma once

#include "mox/host/Picture.h"

#include <map>
#include <string>

namespace Mox::Host {

/// A diagram before layout.
struct Drawing
{
    std::string Dot;                       ///< in the DOT language; the same for equal graphs
    std::map<std::string, Picture> Images; ///< by the file name of the PNG that Dot refers to
};

enum class PictureFormat
{
    Svg, ///< one file with embedded images
    Png,
};

/// Lays out and renders a diagram. Graphviz runs as a separate program because its library caches
/// every image under its file name for the lifetime of the process, is not thread-safe, and would
/// crash the host if a graph is too large for it.
/// @returns the contents of the image file
/// @throws HostError if Graphviz is missing, fails, or takes more than two minutes
std::string RenderPicture(const Drawing& drawing, PictureFormat format);

} // namespace Mox::Host
