#pragma once

#include "mox/document/DocumentTextures.h"
#include "mox/program/EnvironmentUniform.h"
#include "mox/program/ProgramStage.h"
#include "mox/shader/ShaderNode.h"
#include "mox/shader/ShaderRegister.h"
#include "mox/shader/ShaderType.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Host {

enum class ParameterKind
{
    Uniform,      ///< a run-time constant
    Sampler,      ///< a texture
    VertexStream, ///< a vertex attribute
};

/// A value that enters a program from outside, the same in both stages. It is identified by its
/// index in ProgramPlan::Parameters; names are for display and need not be unique: a binding may
/// share its name with an environment value, and a constant with a vertex stream.
struct ProgramParameter
{
    ParameterKind Kind;
    std::string Name;   ///< the artist's name for the binding, or the environment's name for the
                        ///< value
    std::string CgName; ///< in Cg sources; unique among parameters and functions
    ShaderType Type;
    ShaderRegister Register;   ///< attribute or texture unit; unknown for a uniform without a
                               ///< register
    bool IsBinding;            ///< whether it belongs to the material rather than the environment
    bool InVertex;             ///< read by the vertex program
    bool InFragment;           ///< read by the fragment program
    std::string Node = {};     ///< for a binding, the id of the first node that reads it
    SamplerState Sampler = {}; ///< for a texture of the material, as in the document
};

/// A function that both stages may call.
struct PlannedFunction
{
    std::string Name;   ///< its author's name for it; need not be unique
    std::string CgName; ///< in Cg sources; unique among functions and parameters
    std::vector<ShaderPort> Inputs;
    std::vector<ShaderPort> Outputs;
    std::string Code; ///< body in Cg
    std::string Node; ///< id of the first node that it comes from; empty for the environment
    std::string Type; ///< type of that node, or "conversion"; empty for the environment
};

/// A reference to a value that a stage reads.
struct PlanOperand
{
    enum class Source
    {
        Parameter, ///< index into ProgramPlan::Parameters
        Crossing,  ///< index into ProgramPlan::Crossings; only in the fragment stage
        Register,  ///< index into PlannedStage::Inputs
        Result,    ///< index into PlannedStage::Calls, of an earlier call
    };

    Source From;
    std::size_t Index;
    std::size_t Output = 0; ///< index of the call's output

    // NOLINTNEXTLINE(modernize-use-nullptr): mistakes the 0 of a defaulted comparison for a pointer
    friend auto operator<=>(const PlanOperand& a, const PlanOperand& b) = default;
};

struct PlannedCall
{
    std::size_t Function; ///< index into ProgramPlan::Functions
    std::vector<PlanOperand> Arguments;
    std::vector<std::string> ResultNames; ///< for display, one for each output; need not be unique
    std::string Node;                     ///< id of the node that the call comes from
};

/// A register or semantic that a stage reads or writes, other than streams and crossing values.
struct PlannedRegister
{
    ShaderRegister Register;
    ShaderType Type;
    std::string Name; ///< for display; may be empty
};

struct PlannedOutput
{
    PlannedRegister Target;
    PlanOperand Value;
};

/// A function of a stage, and the nodes that call it there.
struct FunctionUse
{
    std::size_t Function; ///< index into ProgramPlan::Functions
    std::vector<std::string> Nodes;
};

struct PlannedStage
{
    std::vector<FunctionUse> Functions; ///< in order of definition
    std::vector<std::size_t> Code;      ///< indices into ProgramPlan::Code of the code that its
                                        ///< functions call
    std::vector<PlannedRegister> Inputs;
    std::vector<PlannedCall> Calls; ///< in order of computation
    std::vector<PlannedOutput> Outputs;
};

/// Components of a crossing value that are adjacent in one register.
struct CrossingPiece
{
    std::int32_t Component;         ///< first component of the value
    std::int32_t Width;             ///< number of components
    std::int32_t Register;          ///< texture coordinate register
    std::int32_t RegisterComponent; ///< first component of the register
};

/// A value that the vertex program passes to the fragment program. Components without a piece are
/// not read there.
struct PlannedCrossing
{
    std::string Name; ///< for display; need not be unique
    ShaderType Type;
    PlanOperand Value; ///< its source in the vertex stage
    std::vector<CrossingPiece> Pieces;
};

/// Both programs of a material in a form independent of any language. Plain data without references
/// to other objects.
struct ProgramPlan
{
    std::vector<ProgramParameter> Parameters; ///< in the order in which programs declare them
    std::vector<EnvironmentUniform>
        EnvironmentUniforms; ///< all uniforms that the environment declares, in its order
    std::vector<PlannedFunction> Functions;
    std::vector<PlannedCrossing> Crossings;
    std::array<PlannedStage, programStageCount> Stages;
    std::vector<std::string> Code;       ///< sources of functions that bodies may call
    std::vector<std::string> TakenNames; ///< names of these functions
    std::vector<std::string> DeadNodes;  ///< ids of nodes that do not affect the surface

    const PlannedStage& StageOf(ProgramStage stage) const
    {
        return Stages[static_cast<std::size_t>(stage)];
    }
    PlannedStage& StageOf(ProgramStage stage) { return Stages[static_cast<std::size_t>(stage)]; }
};

} // namespace Mox::Host
