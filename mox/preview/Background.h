#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/program/CgProgram.h"

namespace Mox::Host {

/// Returns a triangle that covers the entire image.
Mesh MakeBackgroundMesh();

/// Returns a program with a gradient from the environment's ground colour at the bottom to its sky
/// colour at the top.
CgProgram MakeBackgroundProgram();

} // namespace Mox::Host
