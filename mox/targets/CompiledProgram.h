#pragma once

#include "mox/program/ProgramPlan.h"
#include "mox/targets/CompileTarget.h"
#include "mox/targets/StageInterface.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// One stage in one target.
struct TargetProgram
{
    CompileTarget Target;
    ProgramStage Stage;
    std::string Bytes;      ///< text, or the words of the module in the machine's byte order
    std::string EntryPoint; ///< name of the function at which it starts
    std::vector<std::string> Names; ///< of the parameters in it; empty for one that it does not
                                    ///< declare
};

/// A pair of programs in all wanted targets.
struct CompiledProgram
{
    std::vector<ProgramParameter> Parameters; ///< those of the program, in its order, and then what
                                              ///< else the environment declares
    std::vector<UniformBlock> Blocks; ///< those that a stage reads, in the order of their numbers
    StageInterface Vertex;
    StageInterface Fragment;
    std::vector<TargetProgram> Programs; ///< vertex before fragment for each target, in their order

    const StageInterface& InterfaceOf(ProgramStage stage) const
    {
        return stage == ProgramStage::Vertex ? Vertex : Fragment;
    }
};

} // namespace Mox::Host
