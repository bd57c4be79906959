#pragma once

#include "mox/program/CgProgram.h"

#include <string>

/// A pair of programs whose parameters are read off the text: "uniform TYPE NAME;",
/// "uniform TYPE NAME : TEXUNITn;" and "in TYPE NAME : ATTRn". A line such as `// node "Paint"`
/// says where the lines up to the next empty line come from.
Mox::Host::CgProgram MakeProgram(const std::string& vertex, const std::string& fragment);

/// The pair tests/compile/programs/<name>.vert.cg and <name>.frag.cg.
Mox::Host::CgProgram ReadProgram(const std::string& name);

/// A pair in which the vertex program does next to nothing.
Mox::Host::CgProgram MakeFragmentProgram(const std::string& fragment);
