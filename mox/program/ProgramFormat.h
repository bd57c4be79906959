#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgProgram.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// One form in which programs are exported. Serves many threads at once.
class ProgramFormat
{
public:
    virtual ~ProgramFormat() = default;

    /// Endings of the file names of the texts, each with its dot.
    virtual const std::vector<std::string>& Endings() const = 0;

    /// The texts of a program, one for each ending.
    /// @param file of the material, for messages
    /// @param problems takes what stands in the way, with the nodes by id; with an error among it
    ///        the texts do not count
    virtual std::vector<std::string> Write(const CgProgram& program, const std::string& file,
                                           ProblemList& problems) const = 0;
};

} // namespace Mox::Host
