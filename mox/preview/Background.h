#pragma once

#include "mox/decode/Mesh.h"
#include "mox/program/CgProgram.h"

namespace Mox::Host {

/// A triangle that covers the whole picture.
Mesh MakeBackgroundMesh();

/// Shades from the environment's ground colour at the bottom to its sky colour at the top.
CgProgram MakeBackgroundProgram();

} // namespace Mox::Host
