#pragma once

#include "mox/pictures/Drawing.h"

#include <string>

namespace Mox::Host {

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
