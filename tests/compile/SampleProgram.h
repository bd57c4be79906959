#pragma once

#include "mox/program/CgProgram.h"

#include <string>

/// Makes a pair of programs with the parameters declared in the source: "uniform TYPE NAME;",
/// "uniform TYPE NAME : TEXUNITn;" and "in TYPE NAME : ATTRn". A line such as `// node "Paint"`
/// names the node that the following lines, up to the next empty line, come from.
/// @param ofEnvironment parameters that the environment declares; all others are bindings
Mox::Host::CgProgram
MakeProgram(const std::string& vertex, const std::string& fragment,
            const std::vector<Mox::Host::EnvironmentUniform>& ofEnvironment = {});

/// Reads the pair tests/compile/programs/<name>.vert.cg and <name>.frag.cg, with an environment
/// that has object matrices, lights and the frame's time.
Mox::Host::CgProgram ReadProgram(const std::string& name);

/// Makes a pair with a minimal vertex program.
Mox::Host::CgProgram MakeFragmentProgram(const std::string& fragment);
