#pragma once

#include "mox/document/SamplerState.h"
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
    VertexStream, ///< an input for each vertex
};

/// A value that enters a program from outside, the same in both stages. Its place in
/// ProgramPlan::Parameters is its identity; names are for people and may be equal: a binding may be
/// called like a value of the environment, and a constant like a vertex stream.
struct ProgramParameter
{
    ParameterKind Kind;
    std::string Name;   ///< what the artist calls the binding, or the environment its value
    std::string CgName; ///< in Cg sources; no other parameter or function has it
    ShaderType Type;
    ShaderRegister Register; ///< attribute or texture unit; unknown for a uniform without one
    bool IsBinding;          ///< of the material; false if the environment reads it
    bool InVertex;           ///< read by the vertex program
    bool InFragment;         ///< read by the fragment program
    std::vector<std::string> Nodes = {}; ///< ids of the nodes that read it, for a binding
    SamplerState Sampler = {};           ///< of a texture of the material, as the document has it
};

/// A function that both stages may call.
struct PlannedFunction
{
    std::string Name;   ///< what its author calls it; need not be unique
    std::string CgName; ///< in Cg sources; unique among functions and parameters
    std::vector<ShaderPort> Inputs;
    std::vector<ShaderPort> Outputs;
    std::string Code; ///< body in Cg
    std::string Node; ///< id of the first node that it comes from; empty for the environment
    std::string Type; ///< type of that node, "conversion", or empty for the environment
};

/// What a stage reads at one place.
struct PlanOperand
{
    enum class Source
    {
        Parameter, ///< Index into ProgramPlan::Parameters
        Crossing,  ///< Index into ProgramPlan::Crossings; only in the fragment stage
        Register,  ///< Index into PlannedStage::Inputs
        Result,    ///< Index into PlannedStage::Calls, of an earlier call
    };

    Source From;
    std::size_t Index;
    std::size_t Output = 0; ///< of a call

    // NOLINTNEXTLINE(modernize-use-nullptr): takes the 0 of a defaulted comparison for a pointer
    friend auto operator<=>(const PlanOperand& a, const PlanOperand& b) = default;
};

struct PlannedCall
{
    std::size_t Function; ///< index into ProgramPlan::Functions
    std::vector<PlanOperand> Arguments;
    std::vector<std::string> ResultNames; ///< for people, one for each output; need not be unique
    std::string Node;                     ///< id of the node that it comes from
};

/// A register or semantic that a stage reads or writes besides streams and crossing values.
struct PlannedRegister
{
    ShaderRegister Register;
    ShaderType Type;
    std::string Name; ///< for people; may be empty
};

struct PlannedOutput
{
    PlannedRegister Target;
    PlanOperand Value;
};

/// A function of a stage with the nodes that call it there.
struct FunctionUse
{
    std::size_t Function; ///< index into ProgramPlan::Functions
    std::vector<std::string> Nodes;
};

struct PlannedStage
{
    std::vector<FunctionUse> Functions; ///< in the order in which they are defined
    std::vector<std::size_t> Code; ///< indices into ProgramPlan::Code, of what its functions call
    std::vector<PlannedRegister> Inputs;
    std::vector<PlannedCall> Calls; ///< in the order of computation
    std::vector<PlannedOutput> Outputs;
};

/// Components of a crossing value that lie side by side in one register.
struct CrossingPiece
{
    std::int32_t Component;         ///< the first of the value
    std::int32_t Width;             ///< number of components
    std::int32_t Register;          ///< texture coordinate register
    std::int32_t RegisterComponent; ///< the first of the register
};

/// A value that the vertex program hands to the fragment program. Components without a piece are
/// not read there.
struct PlannedCrossing
{
    std::string Name; ///< for people; need not be unique
    ShaderType Type;
    PlanOperand Value; ///< in the vertex stage
    std::vector<CrossingPiece> Pieces;
};

/// Both programs of a material before they are written in a language. Plain data that refers to
/// nothing outside.
struct ProgramPlan
{
    std::vector<ProgramParameter> Parameters; ///< in the order in which programs declare them
    std::vector<EnvironmentUniform>
        EnvironmentUniforms; ///< all that the environment declares, in its order
    std::vector<PlannedFunction> Functions;
    std::vector<PlannedCrossing> Crossings;
    std::array<PlannedStage, programStageCount> Stages;
    std::vector<std::string> Code;       ///< sources of functions that bodies may call
    std::vector<std::string> TakenNames; ///< of these functions
    std::vector<std::string> DeadNodes;  ///< ids of nodes that do not affect the surface

    const PlannedStage& StageOf(ProgramStage stage) const
    {
        return Stages[static_cast<std::size_t>(stage)];
    }
    PlannedStage& StageOf(ProgramStage stage) { return Stages[static_cast<std::size_t>(stage)]; }
};

} // namespace Mox::Host
