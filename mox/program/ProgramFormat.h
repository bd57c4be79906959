#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgProgram.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// A format in which programs are exported. Thread-safe.
class ProgramFormat
{
public:
    virtual ~ProgramFormat() = default;

    /// File name extensions of the files that Write returns, including the leading dot.
    virtual const std::vector<std::string>& Endings() const = 0;

    /// Writes a program; returns the contents of one file for each extension.
    /// @param file of the material, for messages
    /// @param problems receives what prevents the export, with nodes by id; if there is an error,
    ///        the result must not be used
    virtual std::vector<std::string> Write(const CgProgram& program, const std::string& file,
                                           ProblemList& problems) const = 0;
};

/// Exports the Cg programs unchanged.
class CgFormat : public ProgramFormat
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<std::string> Write(const CgProgram& program, const std::string&,
                                   ProblemList&) const override
    {
        return {program.Vertex.Text, program.Fragment.Text};
    }

private:
    const std::vector<std::string> _endings{".vertex.cg", ".fragment.cg"};
};

} // namespace Mox::Host
