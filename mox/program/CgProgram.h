#pragma once

#include "mox/shader/ShaderRegister.h"
#include "mox/shader/ShaderType.h"

#include <string>
#include <vector>

namespace Mox::Host {

enum class ParameterKind
{
    Uniform,      ///< a run-time constant
    Sampler,      ///< a texture
    VertexStream, ///< an input for each vertex
};

/// A value that enters a program from outside. Its name is the same in both stages.
struct ProgramParameter
{
    ParameterKind Kind;
    std::string Name;   ///< of the binding, or of the environment's value
    std::string CgName; ///< in the text
    ShaderType Type;
    ShaderRegister Register; ///< attribute or texture unit; unknown for a uniform
    bool IsBinding;          ///< false if the environment asks for it
    bool InVertex;           ///< read by the vertex program
    bool InFragment;         ///< read by the fragment program
};

/// A value on its way from the vertex to the fragment program.
struct ProgramInterpolant
{
    std::string Name; ///< for people: where the value comes from
    ShaderType Type;
    std::int32_t Register;  ///< texture coordinate register
    std::int32_t Component; ///< first component of the register, 0 to 3
};

/// The text of one stage, with the entry point "main".
struct StageProgram
{
    std::string Text;
    std::vector<std::string> LineNodes; ///< for each line of Text the id of the node it comes from,
                                        ///< or nothing
};

/// A complete pair of Cg programs for one material.
struct CgProgram
{
    StageProgram Vertex;
    StageProgram Fragment;
    std::vector<ProgramParameter> Parameters; ///< in order of their declaration
    std::vector<ProgramInterpolant> Interpolants;
    std::vector<std::string> DeadNodes; ///< ids of nodes of which nothing reaches the surface
};

} // namespace Mox::Host
