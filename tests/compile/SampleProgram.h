#pragma once

#include "mox/program/CgProgram.h"

#include <string>

/// A pair of programs whose parameters are read off the text: "uniform TYPE NAME;",
/// "uniform TYPE NAME : TEXUNITn;" and "in TYPE NAME : ATTRn". A line such as `// node "Paint"`
/// says where the lines up to the next empty line come from.
/// @param ofEnvironment what the environment declares; all other parameters are bindings
Mox::Host::CgProgram
MakeProgram(const std::string& vertex, const std::string& fragment,
            const std::vector<Mox::Host::EnvironmentUniform>& ofEnvironment = {});

/// The pair tests/compile/programs/<name>.vert.cg and <name>.frag.cg, in an environment with
/// matrices of objects, and with lights and a time of the frame.
Mox::Host::CgProgram ReadProgram(const std::string& name);

/// A pair in which the vertex program does next to nothing.
Mox::Host::CgProgram MakeFragmentProgram(const std::string& fragment);
