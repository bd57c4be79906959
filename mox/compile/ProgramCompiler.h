#pragma once

#include "mox/compile/FrontEnd.h"
#include "mox/compile/StageInterface.h"
#include "mox/host/Problem.h"
#include "mox/program/CgProgram.h"

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
                                    ///< read
};

/// A pair of programs in all wanted targets.
struct CompiledProgram
{
    std::vector<ProgramParameter> Parameters; ///< those of the program, in its order
    StageInterface Vertex;
    StageInterface Fragment;
    std::vector<TargetProgram> Programs; ///< vertex before fragment for each target, in their order
};

/// Compiles pairs of Cg programs. Making the first one costs some milliseconds, so keep it for
/// many programs. Nothing of it stays behind when the last one goes.
class ProgramCompiler
{
public:
    /// Compiles both stages to each of the targets. The result is the same to the byte for the
    /// same program, whatever was compiled before. Safe in parallel.
    /// @param file of the material, for messages
    /// @param problems gets an error of the rule "compile" with the node of each faulty line
    /// @return incomplete if errors were added
    CompiledProgram Compile(const CgProgram& program, const std::vector<CompileTarget>& targets,
                            const std::string& file, ProblemList& problems) const;

    /// Finds what Compile would find wrong with the texts of both stages, and nothing else: a text
    /// that the front end takes fails later only by an error of the compiler itself. Takes a small
    /// part of the time. Safe in parallel.
    void Check(const CgProgram& program, const std::string& file, ProblemList& problems) const;

private:
    FrontEnd _frontEnd;
};

} // namespace Mox::Host
